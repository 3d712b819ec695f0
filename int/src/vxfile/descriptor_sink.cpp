#include "vxfile/descriptor_sink.h"

#include "vxcore/text_conversion.h"
#include "vxcrypto/cleanse.h"
#include "vxfile/failures_internal.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>
#include <utility>

namespace vxfile {

DescriptorSink::DescriptorSink(int descriptor, DescriptorSinkOptions options)
    : m_file(descriptor), m_options(std::move(options)),
      m_buffer(new unsigned char[m_options.buffer_size]) {}

DescriptorSink::~DescriptorSink() {
    if (m_options.wipe_buffer) {
        vxcrypto::cleanse(m_buffer.get(), m_options.buffer_size);
    }
}

void DescriptorSink::write(vxcore::ByteView bytes) {
    if (bytes.size() > m_options.buffer_size - m_size) {
        flush();
        if (bytes.size() >= m_options.buffer_size) {
            send(bytes);
            return;
        }
    }
    if (bytes.size() != 0) {
        std::memcpy(m_buffer.get() + m_size, bytes.data(), bytes.size());
        m_size += bytes.size();
    }
}

void DescriptorSink::flush() {
    send({m_buffer.get(), std::exchange(m_size, 0)});
}

void DescriptorSink::send(vxcore::ByteView bytes) {
    unsigned char const * at = bytes.data();
    unsigned char const * const end = at + bytes.size();
    while (at != end) {
        ssize_t const count = ::write(m_file, at, static_cast<std::size_t>(end - at));
        if (count < 0 && errno != EINTR) {
            int const reason = errno;
            impl::throw_system(error::vxfile_write, "{@path}: cannot be written: {@reason}",
                               m_options.name.empty() ? "descriptor " + vxcore::to_string(m_file)
                                                      : m_options.name,
                               reason, "vxfile::DescriptorSink::write()");
        }
        at += count < 0 ? 0 : count;
        m_written += count < 0 ? 0 : static_cast<unsigned long long>(count);
    }
}

} // namespace vxfile
