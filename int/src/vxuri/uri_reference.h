#pragma once

#include "vxcore/ref_count_ptr.h"
#include "vxuri/export.h"

#include <compare>
#include <iosfwd>
#include <string>
#include <string_view>

namespace vxuri {

namespace impl {
class UriParseData;
}

/// A URI reference (RFC 3986): a handle on immutable, shared parse data. One pointer wide.
///
/// A default reference is the undefined one; it has an empty text, as the empty reference has, and
/// compares equal to it, but traces as "<undefined>".
///
/// Comparison is by bytes, taken as signed characters, except that A to F and a to f are alike in
/// the two characters after a "%": %2f equals %2F. Escapes are not decoded.
///
/// Threads. References may be copied and read in any thread.
class VXURI_API UriReference {
  public:
    /// The undefined reference.
    UriReference() noexcept;

    /// @pre `data` is not null.
    explicit UriReference(vxcore::RefCountPtr<impl::UriParseData const> data) noexcept;

    /// A copy costs one atomic count. Out of line, because the parse data is incomplete here.
    UriReference(UriReference const &) noexcept;
    UriReference & operator=(UriReference const &) noexcept;
    ~UriReference();

    /// Splits `text` by the regular expression of RFC 3986 appendix B, which every text matches.
    /// Returns the empty reference for an empty text.
    ///
    /// @raises std::length_error: `text` is beyond 2^32 - 1 bytes.
    static UriReference parse(std::string text);

    /// The shared reference of empty text that is not undefined.
    static UriReference empty_reference() noexcept;

    /// True when the text follows the grammar of RFC 3986 to the letter.
    bool is_strict() const noexcept;

    /// The text as written; empty for the undefined reference too.
    std::string const & text() const noexcept VXCORE_LIFETIMEBOUND;

    bool empty() const noexcept;

    bool is_undefined() const noexcept;

    /// The components as views into the text, without their delimiters; empty if absent. The `has_`
    /// functions tell an absent component from an empty one.
    std::string_view scheme() const noexcept VXCORE_LIFETIMEBOUND;
    std::string_view authority() const noexcept VXCORE_LIFETIMEBOUND;
    std::string_view host() const noexcept VXCORE_LIFETIMEBOUND;
    std::string_view port() const noexcept VXCORE_LIFETIMEBOUND;
    std::string_view path() const noexcept VXCORE_LIFETIMEBOUND;
    std::string_view query() const noexcept VXCORE_LIFETIMEBOUND;
    std::string_view fragment() const noexcept VXCORE_LIFETIMEBOUND;

    bool has_scheme() const noexcept;
    bool has_authority() const noexcept;
    bool has_query() const noexcept;
    bool has_fragment() const noexcept;

    int compare(UriReference const & other) const noexcept;
    bool equal(UriReference const & other) const noexcept;
    unsigned int hash() const noexcept;

    /// Writes "<undefined>" for the undefined reference, otherwise the text.
    void write_trace(std::ostream & stream) const;

    /// Never null.
    vxcore::RefCountPtr<impl::UriParseData const> const &
    parse_data() const noexcept VXCORE_LIFETIMEBOUND {
        return m_data;
    }

    friend bool operator==(UriReference const & a, UriReference const & b) noexcept {
        return a.equal(b);
    }

    /// The sign of `compare`. Weak: equal references may differ in the case of their escapes, and
    /// the undefined reference is equal to the empty one.
    friend std::weak_ordering operator<=>(UriReference const & a, UriReference const & b) noexcept {
        return a.compare(b) <=> 0;
    }

  private:
    vxcore::RefCountPtr<impl::UriParseData const> m_data;
};

VXURI_API std::ostream & operator<<(std::ostream & stream, UriReference const & reference);

} // namespace vxuri
