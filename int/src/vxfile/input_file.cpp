#include "vxfile/input_file.h"

#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"
#include "vxfile/failures_internal.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vxfile {

namespace impl {

bool FileDescriptor::close() noexcept {
    int const file = std::exchange(m_file, -1);
    return file < 0 || !m_isOurs || ::close(file) == 0;
}

} // namespace impl

using impl::FileDescriptor;

InputFile::InputFile(std::string path, InputFileOptions options)
    : InputFile(
          FileDescriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC), FileDescriptor::EOwner::eUs),
          std::move(path), std::move(options)) {}

InputFile::InputFile(int descriptor, std::string name, InputFileOptions options)
    : InputFile(FileDescriptor(descriptor, FileDescriptor::EOwner::eCaller), std::move(name),
                std::move(options)) {}

InputFile::InputFile(FileDescriptor file, std::string && name, InputFileOptions && options)
    : m_name(std::move(name)), m_file(std::move(file)), m_options(std::move(options)) {
    struct stat info {};

    if (m_file.get() < 0 || ::fstat(m_file.get(), &info) != 0) {
        impl::throw_open(m_name, errno, "vxfile::InputFile::InputFile()");
    }
    if (S_ISREG(info.st_mode)) {
        m_fileSize = std::max<long long>(0, info.st_size - ::lseek(m_file.get(), 0, SEEK_CUR));
    }
    m_buffer.reset(new char[sm_bufferSize]);
}

InputFile::InputFile(InputFile && other) noexcept = default;

InputFile::~InputFile() = default;

void InputFile::received_more() {}

bool InputFile::fill() {
    std::size_t const kept = m_rest.size();
    if (kept != 0) {
        std::memmove(m_buffer.get(), m_rest.data(), kept);
    }
    ssize_t count = 0;
    do {
        count = ::read(m_file.get(), m_buffer.get() + kept, sm_bufferSize - kept);
    } while (count < 0 && errno == EINTR);
    m_rest = {m_buffer.get(), kept};
    if (count < 0) {
        impl::throw_system(error::vxfile_read, "{@path}: cannot be read: {@reason}", m_name, errno,
                           "vxfile::InputFile::fill()");
    }
    m_received += static_cast<unsigned long long>(count);
    // The size of a plain file is known: refuse it at once, not when the limit is reached.
    auto const known = static_cast<unsigned long long>(std::max(m_fileSize, 0LL));
    if (std::max(m_received, known) > m_options.max_size) {
        vxcore::ErrorComposer("{@path}: has more than {@limit} bytes, which {@option} allows")
            .param("path", m_name)
            .param("limit", vxcore::to_string(m_options.max_size))
            .param("option", m_options.max_size_name)
            .throw_error(error::vxfile_size, VXCORE_LOCATION("vxfile::InputFile::fill()"));
    }
    m_rest = {m_buffer.get(), kept + static_cast<std::size_t>(count)};
    received_more();
    return count != 0;
}

std::string_view InputFile::head() {
    // A pipe may deliver less at a time.
    while (m_rest.size() < sm_headSize && fill()) {
    }
    return m_rest.substr(0, sm_headSize);
}

unsigned int InputFile::read(void * buffer, unsigned int size) {
    unsigned int done = 0;
    while (done != size && (!m_rest.empty() || fill())) {
        std::size_t const count = std::min<std::size_t>(size - done, m_rest.size());
        std::memcpy(static_cast<char *>(buffer) + done, m_rest.data(), count);
        m_rest.remove_prefix(count);
        done += static_cast<unsigned int>(count);
    }
    return done;
}

unsigned int InputFile::skip(unsigned int size) {
    unsigned int done = 0;
    while (done != size && (!m_rest.empty() || fill())) {
        std::size_t const count = std::min<std::size_t>(size - done, m_rest.size());
        m_rest.remove_prefix(count);
        done += static_cast<unsigned int>(count);
    }
    return done;
}

long long InputFile::size() const {
    long long const received = static_cast<long long>(m_received - m_rest.size());
    return m_fileSize < received ? -1 : m_fileSize - received;
}

vxcore::RefCountPtr<vxserialize::MemoryList> InputFile::read_all() {
    auto list = vxserialize::MemoryList::create(
        static_cast<unsigned int>(std::clamp(m_fileSize, 256LL, 1LL << 26)));
    while (!m_rest.empty() || fill()) {
        list->append(m_rest.data(), static_cast<unsigned int>(m_rest.size()));
        m_rest = {};
    }
    return list;
}

std::string InputFile::read_all_text() {
    std::string text;
    text.reserve(static_cast<std::size_t>(std::clamp(m_fileSize, 0LL, 1LL << 26)));
    while (!m_rest.empty() || fill()) {
        text += m_rest;
        m_rest = {};
    }
    return text;
}

} // namespace vxfile
