#pragma once

#include "vxcore/export.h"

#include <iosfwd>
#include <string>
#include <string_view>

namespace vxcore {

/// Small objects that write a value to a trace.
namespace streamers {

class VXCORE_API Boolean {
  public:
    explicit Boolean(bool value) noexcept : m_value(value) {}

    /// "true" or "false".
    std::string_view text() const noexcept { return m_value ? "true" : "false"; }

    /// Inserts the text as any string is inserted.
    void write_trace(std::ostream & stream) const;

  private:
    bool m_value;
};

/// A text in quotes, cut at a limit.
class VXCORE_API String {
  public:
    /// @param text   Must outlive this object.
    /// @param limit  The most bytes shown; never inside a UTF-8 sequence. When bytes are left out,
    ///               "...(+n)" follows the closing quote.
    String(std::string_view text, unsigned int limit, char quote) noexcept
        : m_text(text), m_limit(limit), m_quote(quote) {}

    void write_trace(std::ostream & stream) const;

  private:
    std::string_view m_text;
    unsigned int m_limit;
    char m_quote;
};

VXCORE_API std::ostream & operator<<(std::ostream & stream, Boolean const & value);
VXCORE_API std::ostream & operator<<(std::ostream & stream, String const & value);

} // namespace streamers

/// A view of text that is computed only when it is written. The destructor is protected: never
/// delete through this interface.
class VXCORE_API StringTraceData {
  public:
    /// Writes what `data` shows. A view of unknown size (all ones) writes nothing.
    static void write_to_stream(std::ostream & stream, StringTraceData const & data);

    /// Returns the text and stores its size in bytes in `size`; all ones if the size is unknown.
    virtual char const * trace_data(unsigned int & size) const = 0;

  protected:
    StringTraceData() = default;
    StringTraceData(StringTraceData const &) = default;
    StringTraceData & operator=(StringTraceData const &) = default;
    ~StringTraceData() = default;
};

/// Where a text of UTF-8 may be cut so that at most `limit` bytes are shown: `limit`, or the start
/// of the sequence that it falls into (0 at the latest). The size itself when nothing is cut.
VXCORE_API unsigned int utf8_cut(std::string_view text, unsigned int limit) noexcept;

namespace impl {

struct VXCORE_API TransformHelperHex {
    /// The 16 hexadecimal digits, lower case.
    static char const sm_fromBinaryTable[16];
};

} // namespace impl
} // namespace vxcore
