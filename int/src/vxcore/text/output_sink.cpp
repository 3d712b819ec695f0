#include "vxcore/output_sink.h"

#include "vxcore/error_codes.h"
#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"

#include <cstring>
#include <ostream>

namespace vxcore {

namespace {

std::string number(std::size_t value) {
    return to_string(static_cast<unsigned long long>(value));
}

} // namespace

void StringSink::write(ByteView bytes) {
    m_target.append(bytes.as_text());
}

void BufferSink::write(ByteView bytes) {
    std::span<std::byte> const room = m_buffer.subspan(m_size);
    if (bytes.size() > room.size()) {
        ErrorComposer("A buffer of {@capacity} bytes is full: {@written} are written, and {@size} "
                      "more do not fit")
            .param("capacity", number(m_buffer.size()))
            .param("written", number(m_size))
            .param("size", number(bytes.size()))
            .throw_error(error::vxcore_output_full, VXCORE_LOCATION("vxcore::BufferSink::write()"));
    }
    if (!bytes.empty()) {
        std::memcpy(room.data(), bytes.data(), bytes.size());
        m_size += bytes.size();
    }
}

void StreamSink::write(ByteView bytes) {
    m_stream.write(bytes.as_text().data(), static_cast<std::streamsize>(bytes.size()));
    if (!m_stream) {
        throw_error(error::vxcore_output, SourceString("A standard stream cannot be written", true),
                    VXCORE_LOCATION("vxcore::StreamSink::write()"));
    }
}

} // namespace vxcore
