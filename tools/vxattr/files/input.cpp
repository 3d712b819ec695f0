#include "vxattr/files/input.h"

#include "vxattr/failure.h"
#include "vxcore/text_conversion.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vxattr {

namespace {

constexpr unsigned long long mebibyte = 1 << 20;
constexpr unsigned long long shownFrom = 4 * mebibyte;

} // namespace

Input::Input(std::string path, unsigned long long maxSize)
    : m_place(path == "-" ? "standard input" : path),
      m_file(path == "-" ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC)),
      m_maxSize(maxSize), m_buffer(new char[sm_bufferSize]) {
    struct stat info {};

    if (m_file < 0 || ::fstat(m_file, &info) != 0) {
        int const reason = errno;
        if (m_file > STDIN_FILENO) {
            ::close(m_file);
        }
        throw Failure(m_place, std::string("cannot be opened: ") + std::strerror(reason));
    }
    if (S_ISREG(info.st_mode)) {
        m_fileSize = std::max<long long>(0, info.st_size - ::lseek(m_file, 0, SEEK_CUR));
    }
    if (::isatty(STDERR_FILENO) != 0) {
        m_nextShown = shownFrom;
    }
}

Input::~Input() {
    if (m_wasShown) {
        std::fputs("\r\033[K", stderr);
    }
    if (m_file != STDIN_FILENO) {
        ::close(m_file);
    }
}

bool Input::fill() {
    std::size_t const kept = m_rest.size();
    if (kept != 0) {
        std::memmove(m_buffer.get(), m_rest.data(), kept);
    }
    ssize_t count = 0;
    do {
        count = ::read(m_file, m_buffer.get() + kept, sm_bufferSize - kept);
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
        throw Failure(m_place, std::string("cannot be read: ") + std::strerror(errno));
    }
    m_received += static_cast<unsigned long long>(count);
    // The size of a plain file is known: refuse it at once, not when the limit is reached.
    if (m_received > m_maxSize || m_fileSize > static_cast<long long>(m_maxSize)) {
        throw Failure(m_place, "has more than " + vxcore::to_string(m_maxSize) +
                                   " bytes, which --max-size allows");
    }
    if (m_nextShown != 0 && m_received >= m_nextShown) {
        show_progress();
    }
    m_rest = {m_buffer.get(), kept + static_cast<std::size_t>(count)};
    return count != 0;
}

void Input::show_progress() {
    m_nextShown = m_received + mebibyte;
    m_wasShown = true;
    std::string text = "\rread " + vxcore::to_string(m_received / mebibyte);
    if (m_fileSize > 0) {
        text += " of " + vxcore::to_string(static_cast<unsigned long long>(m_fileSize) / mebibyte);
    }
    std::fputs((text + " MiB").c_str(), stderr);
}

std::string_view Input::head() {
    // A pipe may deliver less at a time.
    while (m_rest.size() < sm_headSize && fill()) {
    }
    return m_rest.substr(0, sm_headSize);
}

unsigned int Input::read(void * buffer, unsigned int size) {
    unsigned int done = 0;
    while (done != size && (!m_rest.empty() || fill())) {
        std::size_t const count = std::min<std::size_t>(size - done, m_rest.size());
        std::memcpy(static_cast<char *>(buffer) + done, m_rest.data(), count);
        m_rest.remove_prefix(count);
        done += static_cast<unsigned int>(count);
    }
    return done;
}

unsigned int Input::skip(unsigned int size) {
    unsigned int done = 0;
    while (done != size && (!m_rest.empty() || fill())) {
        std::size_t const count = std::min<std::size_t>(size - done, m_rest.size());
        m_rest.remove_prefix(count);
        done += static_cast<unsigned int>(count);
    }
    return done;
}

long long Input::size() const {
    long long const received = static_cast<long long>(m_received - m_rest.size());
    return m_fileSize < received ? -1 : m_fileSize - received;
}

vxcore::RefCountPtr<vxserialize::MemoryList> Input::read_all() {
    auto list = vxserialize::MemoryList::create(
        static_cast<unsigned int>(std::clamp(m_fileSize, 256LL, 1LL << 26)));
    while (!m_rest.empty() || fill()) {
        list->append(m_rest.data(), static_cast<unsigned int>(m_rest.size()));
        m_rest = {};
    }
    return list;
}

} // namespace vxattr
