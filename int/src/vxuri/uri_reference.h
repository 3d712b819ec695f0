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
/// the two characters after a "%": %2f equals %2F. Escapes are not decoded, neither for comparison
/// nor in the components.
///
/// Cost. Parsing copies nothing of a text that is moved in and allocates the parse data once. The
/// components are stored as positions, so reading one is a few additions. A copy is one atomic
/// count, and so is a move.
///
/// Threads. References may be copied and read in any thread. One object: many readers or one
/// writer.
///
/// Errors. No text is refused: `is_strict()` tells whether it is correct. Parse data that was not
/// made by `parse` may hold any positions; components are then clamped to the text.
///
///     auto const uri = UriReference::parse("https://me@example.org:8080/a?b#c");
///     uri.host();          // example.org
///     uri.port();          // 8080
///     uri.path();          // /a
///     uri.has_fragment();  // true
class VXURI_API UriReference {
  public:
    /// The undefined reference. One atomic count: all of them share one instance.
    UriReference() noexcept;

    /// A reference to existing parse data, whose words are not checked.
    ///
    /// @pre `data` is not null.
    explicit UriReference(vxcore::RefCountPtr<impl::UriParseData const> data) noexcept;

    /// A copy shares the parse data. Out of line, because the parse data is incomplete here.
    UriReference(UriReference const &) noexcept;
    UriReference & operator=(UriReference const &) noexcept;
    ~UriReference();

    /// Splits `text` by the regular expression of RFC 3986 appendix B, which every text matches.
    /// Returns the empty reference for an empty text.
    ///
    /// @raises std::length_error: `text` is beyond 2^32 - 1 bytes. std::bad_alloc: no memory.
    /// @cost   O(size), and one allocation.
    static UriReference parse(std::string text);

    /// The shared reference of empty text that is not undefined.
    static UriReference empty_reference() noexcept;

    /// True when the text follows the grammar of RFC 3986, appendix A, to the letter, as the empty
    /// text does. Not stored: each call checks the text again.
    bool is_strict() const noexcept;

    /// The text as written; empty for the undefined reference too.
    ///
    /// @keeps  As long as this or another reference holds the same parse data. Components too.
    std::string const & text() const noexcept VXCORE_LIFETIMEBOUND;

    /// True if the text is empty: for the empty reference, and for a default one.
    bool empty() const noexcept;

    /// True if the parse data has the mark of the undefined reference, as that of a default one has
    /// and that of the empty one has not.
    bool is_undefined() const noexcept;

    /// The components as views into the text, without their delimiters; empty if absent. The `has_`
    /// functions tell an absent component from an empty one: "x?" has an empty query. Host and port
    /// are parts of the authority; the host keeps the brackets of an IPv6 address. The path is
    /// never absent, but may be empty.
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

    /// The three by the rule of the class comment. `compare` returns the difference of the first
    /// bytes that differ, or else of the sizes: negative, 0 or positive.
    ///
    /// @cost  O(size); `compare` and `equal` are O(1) for references that share their data, `equal`
    ///        also for texts of different sizes. The hash is not stored.
    int compare(UriReference const & other) const noexcept;
    bool equal(UriReference const & other) const noexcept;

    /// Equal references have equal hashes. The hash has no key: texts that collide are easy to
    /// find.
    unsigned int hash() const noexcept;

    /// Writes "<undefined>" for the undefined reference, otherwise the text.
    void write_trace(std::ostream & stream) const;

    /// What the reference refers to; never null. A copy of the pointer keeps it.
    vxcore::RefCountPtr<impl::UriParseData const> const &
    parse_data() const noexcept VXCORE_LIFETIMEBOUND {
        return m_data;
    }

    /// As `equal`.
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

/// As `write_trace`.
VXURI_API std::ostream & operator<<(std::ostream & stream, UriReference const & reference);

} // namespace vxuri
