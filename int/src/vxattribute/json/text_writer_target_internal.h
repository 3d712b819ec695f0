#pragma once

#include "vxjson/text_output_impl.h"
#include "vxserialize/text_writer.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace vxattribute::impl {

/// Passes the text form, which needs no escapes, to the open string of a JSON writer. Call `flush`
/// at the end.
template <typename Writer>
class JsonStringTarget;

/// Writes to the buffer of a TextWriter.
template <>
class JsonStringTarget<vxjson::impl::TextOutput> final
    : public vxserialize::TextWriter::ITextTarget {
  public:
    explicit JsonStringTarget(vxjson::impl::TextOutput output) noexcept : m_output(output) {}

    void write_char(char c) override { write_data(&c, 1); }

    void write_data(char const * data, unsigned int size) override {
        m_output.write_plain_data(data, size);
    }

    void flush() noexcept {}

  private:
    vxjson::impl::TextOutput m_output;
};

/// Collects text and passes it on in pieces of 2048 bytes, so that the writer is not called for
/// each small one.
template <>
class JsonStringTarget<vxjson::Writer &> final : public vxserialize::TextWriter::ITextTarget {
  public:
    explicit JsonStringTarget(vxjson::Writer & writer) noexcept : m_writer(writer) {}

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
