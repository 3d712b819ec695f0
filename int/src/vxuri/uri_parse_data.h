#pragma once

#include "vxcore/ref_count_ptr.h"
#include "vxcore/streamers.h"
#include "vxuri/export.h"

#include <array>
#include <string>

namespace vxuri::impl {

/// The shared data of a UriReference: its text and the positions of its components. Immutable.
///
/// The words of `parts`, positions and sizes in bytes. A size includes the delimiter of the
/// component, so that 0 means that the component is absent. In the shared instances of empty text
/// all words are 0, except for the mark of the undefined one.
///
///     [0]  0; all ones when the reference is undefined
///     [1]  size of the scheme with its ":"
///     [2]  size of the authority with its "//"
///     [3]  end of the path, which begins at [1] + [2]
///     [4]  size of the query with its "?"; [3] + [4] is the end of the text before the "#"
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
        /// @param data  Must outlive the view.
        explicit TraceDataUriReference(UriParseData const & data) noexcept : m_data(data) {}

        /// Returns the text and its size.
        char const * trace_data(unsigned int & size) const override;

      private:
        UriParseData const & m_data;
    };

    /// A view of the text before the "#". Its size is [3] + [4], or all ones if the sum overflows.
    /// The size may exceed the text if the words do not come from `split`.
    class VXURI_API TraceDataUri final : public vxcore::StringTraceData {
      public:
        explicit TraceDataUri(UriParseData const & data) noexcept : m_data(data) {}

        char const * trace_data(unsigned int & size) const override;

      private:
        UriParseData const & m_data;
    };

    /// Stores text and words unchecked.
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

    /// True if the first word has the mark of the undefined reference.
    bool is_undefined() const noexcept { return parts[0] == ~0u; }

    /// The data itself, and views of it for traces, which live as long as it.
    std::string const text;
    Parts const parts;
    TraceDataUriReference const traceReference;
    TraceDataUri const traceUri;

  private:
    ~UriParseData() override;
};

} // namespace vxuri::impl
