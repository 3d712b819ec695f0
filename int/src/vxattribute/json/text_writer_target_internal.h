#pragma once

#include "vxattribute/json/render_visitor_internal.h"
#include "vxserialize/text_writer.h"

#include <algorithm>
#include <cstring>

namespace vxattribute::impl {

/// Collects text and passes it to a JSON string in pieces of 2048 bytes, so that the writer is not
/// called for each small one. Call `flush` at the end.
class JsonRenderVisitor::TextWriterTarget final : public vxserialize::TextWriter::ITextTarget {
  public:
    explicit TextWriterTarget(vxjson::Writer & writer) noexcept : m_writer(writer) {}

    void write_char(char c) override {
        m_buffer[m_size++] = c;
        if (m_size == sm_bufferSize) {
            flush();
        }
    }

    /// Writes the buffer as soon as it is full. The rest bypasses the buffer if it would fill
    /// another.
    void write_data(char const * data, unsigned int size) override {
        while (size != 0) {
            unsigned int const count = std::min(size, sm_bufferSize - m_size);
            std::memcpy(m_buffer + m_size, data, count);
            m_size += count;
            data += count;
            size -= count;
            if (m_size == sm_bufferSize) {
                flush();
                if (size >= sm_bufferSize) {
                    m_writer.write_string_data(data, size);
                    return;
                }
            }
        }
    }

    void flush() {
        if (m_size != 0) {
            m_writer.write_string_data(m_buffer, std::exchange(m_size, 0));
        }
    }

  private:
    static constexpr unsigned int sm_bufferSize = 2048;

    vxjson::Writer & m_writer;
    unsigned int m_size = 0;
    char m_buffer[sm_bufferSize];
};

} // namespace vxattribute::impl
