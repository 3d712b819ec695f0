#pragma once

#include "vxcore/ref_count_ptr.h"
#include "vxcore/streamers.h"
#include "vxuri/export.h"

#include <array>
#include <string>

namespace vxuri::impl {

/// What stands behind a UriReference: the text and where its components lie. Immutable and shared.
///
/// The words of `parts`, positions and sizes in bytes. A size counts the delimiter that brings the
/// component in, so that 0 says that there is no such component. In the shared instances of empty
/// text all of them are 0, but for the mark of the undefined one.
///
///     [0]  0; all ones when the reference is undefined
///     [1]  size of the scheme with its ":"
///     [2]  size of the authority with its "//"
///     [3]  end of the path, which begins at [1] + [2]
///     [4]  size of the query with its "?"; [3] + [4] is the end of all that stands before the "#"
///     [5]  size of the fragment with its "#"
///     [6]  size of the user information with its "@"
///     [7]  begin of the host
///     [8]  end of the host
///     [9]  size of the port with its ":"
///     [10] to [12]  0
class VXURI_API UriParseData final : public vxcore::RefCounted<vxcore::AtomicRefCount> {
  public:
    using Parts = std::array<unsigned int, 13>;

    /// A view of the whole text.
    class VXURI_API TraceDataUriReference final : public vxcore::StringTraceData {
      public:
        explicit TraceDataUriReference(UriParseData const & data) noexcept : m_data(data) {}

        char const * trace_data(unsigned int & size) const override;

      private:
        UriParseData const & m_data;
    };

    /// A view of the text before the "#". Its size is [3] + [4] as they are, all ones when the sum
    /// overflows: words that `split` did not make may lead beyond the text.
    class VXURI_API TraceDataUri final : public vxcore::StringTraceData {
      public:
        explicit TraceDataUri(UriParseData const & data) noexcept : m_data(data) {}

        char const * trace_data(unsigned int & size) const override;

      private:
        UriParseData const & m_data;
    };

    /// Takes text and words as they are.
    ///
    /// @raises std::length_error: `text` is beyond 2^32 - 1 bytes.
    UriParseData(std::string text, Parts const & parts);

    UriParseData(UriParseData const &) = delete;
    UriParseData & operator=(UriParseData const &) = delete;

    /// Data for any text, by the regular expression of RFC 3986 appendix B. In the authority, the
    /// last "@" ends the user information, and the last ":" that no "]" follows begins the port.
    ///
    /// @raises std::length_error: `text` is beyond 2^32 - 1 bytes.
    static vxcore::RefCountPtr<UriParseData const> split(std::string text);

    bool is_undefined() const noexcept { return parts[0] == ~0u; }

    std::string const text;
    Parts const parts;
    TraceDataUriReference const traceReference;
    TraceDataUri const traceUri;

  private:
    ~UriParseData() override;
};

} // namespace vxuri::impl
