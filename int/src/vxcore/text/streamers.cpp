#include "vxcore/streamers.h"

#include "vxcore/text_conversion.h"

#include <limits>
#include <ostream>

namespace vxcore {

namespace streamers {

void Boolean::write_trace(std::ostream & stream) const {
    stream << text();
}

void String::write_trace(std::ostream & stream) const {
    unsigned int const shown = utf8_cut(m_text, m_limit);
    stream << m_quote << m_text.substr(0, shown) << m_quote;
    if (shown < m_text.size()) {
        unsigned long long const left = m_text.size() - shown;
        stream << "...(+" << to_string(left) << ')';
    }
}

std::ostream & operator<<(std::ostream & stream, Boolean const & value) {
    value.write_trace(stream);
    return stream;
}

std::ostream & operator<<(std::ostream & stream, String const & value) {
    value.write_trace(stream);
    return stream;
}

} // namespace streamers

void StringTraceData::write_to_stream(std::ostream & stream, StringTraceData const & data) {
    unsigned int size = 0;
    char const * const text = data.trace_data(size);
    // All ones are no size: the sum of the parts has overflowed.
    if (size != std::numeric_limits<unsigned int>::max()) {
        stream << std::string_view(text, size);
    }
}

unsigned int utf8_cut(std::string_view text, unsigned int limit) noexcept {
    if (text.size() <= limit) {
        return static_cast<unsigned int>(text.size());
    }
    // Back to the start of the sequence that the limit would cut. Its other bytes are 10xxxxxx.
    while (limit > 0 && (static_cast<unsigned char>(text[limit]) & 0xC0) == 0x80) {
        --limit;
    }
    return limit;
}

namespace impl {

constinit char const TransformHelperHex::sm_fromBinaryTable[16] = {
    '0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'a', 'b', 'c', 'd', 'e', 'f'};

} // namespace impl
} // namespace vxcore
