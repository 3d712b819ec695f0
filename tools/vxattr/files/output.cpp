#include "vxattr/files/output.h"

#include "vxattr/failure.h"
#include "vxcrypto/cleanse.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <locale>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace vxattr {

namespace {

constexpr char refusal[] = "is there already, and is not replaced";

/// Some file systems do not support this and fail with EINVAL.
bool sync_file(int file) noexcept {
    return ::fsync(file) == 0 || errno == EINVAL;
}

/// Waits until the names in the folder of `path` are on the disk.
bool sync_folder_of(std::string const & path) {
    std::string const folder = std::filesystem::path(path).parent_path().string();
    int const file =
        ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file < 0) {
        return true; // a folder may be writable and not readable
    }
    bool const isDone = sync_file(file);
    int const reason = errno;
    ::close(file);
    errno = reason;
    return isDone;
}

/// The permissions of a file that open() creates.
mode_t default_mode() noexcept {
    mode_t const mask = ::umask(0); // there is no way to only read it
    ::umask(mask);
    return 0666 & ~mask;
}

/// Renames a file in one step, which fails when the new name is taken. A check beforehand would
/// leave a moment in which another process could take it.
bool rename_to_free_name(char const * from, char const * to) noexcept {
    if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) {
        return true;
    }
    if ((errno != EINVAL && errno != ENOSYS) || ::link(from, to) != 0) {
        return false;
    }
    ::unlink(from);
    return true;
}

} // namespace

Output::Output(std::string path, EAccess access)
    : m_path(std::move(path)), m_access(access), m_buffer(new char[sm_bufferSize]) {
    if (m_path == "-") {
        m_file = STDOUT_FILENO;
        return;
    }

    struct stat info {};

    bool const isThere = ::stat(m_path.c_str(), &info) == 0;
    if (isThere && m_access == EAccess::eNewOwnerOnly) {
        throw Failure(m_path, refusal);
    }
    if (isThere && !S_ISREG(info.st_mode)) {
        m_file = ::open(m_path.c_str(), O_WRONLY | O_CLOEXEC);
        if (m_file < 0) {
            fail("cannot be opened: ");
        }
        return;
    }
    if (isThere) {
        resolve_replaced();
    }
    open_new();
    mode_t mode = S_IRUSR | S_IWUSR;
    if (m_access == EAccess::eAsUsual) {
        mode = isThere ? info.st_mode & 07777u : default_mode();
    }
    ::fchmod(m_file, mode);
}

void Output::resolve_replaced() {
    if (::access(m_path.c_str(), W_OK) != 0) {
        fail("cannot be written: "); // a new file beside it would need no such right
    }
    std::error_code error;
    auto const target = std::filesystem::canonical(m_path, error);
    if (!error) {
        m_path = target.string();
    }
}

void Output::open_new() {
    m_newPath = m_path + ".XXXXXX";
    m_file = ::mkostemp(m_newPath.data(), O_CLOEXEC);
    if (m_file < 0) {
        m_newPath.clear();
        fail("cannot be written: ");
    }
}

Output::~Output() {
    if (m_access != EAccess::eAsUsual) {
        vxcrypto::cleanse(m_buffer.get(), sm_bufferSize);
    }
    if (m_file > STDERR_FILENO) {
        ::close(m_file);
    }
    if (!m_newPath.empty()) {
        std::remove(m_newPath.c_str());
    }
}

bool Output::is_terminal() const {
    return ::isatty(m_file) != 0;
}

void Output::fail(char const * what) const {
    throw Failure(m_path == "-" ? "standard output" : m_path,
                  std::string(what) + std::strerror(errno));
}

void Output::write(std::string_view text) {
    if (text.size() > sm_bufferSize - m_size) {
        flush();
        if (text.size() >= sm_bufferSize) {
            send(text);
            return;
        }
    }
    std::copy(text.begin(), text.end(), m_buffer.get() + m_size);
    m_size += text.size();
}

void Output::write(vxserialize::MemoryListBase const & list) {
    for (auto segment = list.segment_read_iterator(); !segment.at_end(); ++segment) {
        write({reinterpret_cast<char const *>(segment->data()), segment->size()});
    }
}

void Output::flush() {
    std::size_t const size = m_size;
    m_size = 0;
    send({m_buffer.get(), size});
}

void Output::send(std::string_view text) {
    m_written += text.size();
    while (!text.empty()) {
        ssize_t const count = ::write(m_file, text.data(), text.size());
        if (count < 0 && errno != EINTR) {
            fail("cannot be written: ");
        }
        text.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
}

void Output::finish() {
    flush();
    if (m_newPath.empty() || m_file < 0) {
        return;
    }
    bool const isOnDisk = sync_file(m_file);
    int const reason = errno;
    if (::close(std::exchange(m_file, -1)) != 0 || !isOnDisk) {
        errno = isOnDisk ? errno : reason;
        fail("cannot be written: ");
    }
}

void Output::commit() {
    finish();
    if (m_newPath.empty()) {
        return;
    }
    bool const isNew = m_access == EAccess::eNewOwnerOnly;
    bool const isRenamed = isNew ? rename_to_free_name(m_newPath.c_str(), m_path.c_str())
                                 : std::rename(m_newPath.c_str(), m_path.c_str()) == 0;
    if (!isRenamed && isNew && errno == EEXIST) {
        throw Failure(m_path, refusal);
    }
    if (!isRenamed) {
        fail("cannot be written: ");
    }
    m_newPath.clear();
    if (!sync_folder_of(m_path)) {
        fail("is in place, but its folder cannot be put on the disk: ");
    }
}

OutputStream::OutputStream(Output & output, bool isVisible)
    : std::ostream(this), m_output(output), m_isVisible(isVisible) {
    std::ostream::imbue(std::locale::classic());
    exceptions(std::ios::badbit);
}

std::streambuf::int_type OutputStream::overflow(std::streambuf::int_type c) {
    char const byte = std::streambuf::traits_type::to_char_type(c);
    xsputn(&byte, 1);
    return c;
}

std::streamsize OutputStream::xsputn(char const * data, std::streamsize size) {
    std::string_view const text(data, static_cast<std::size_t>(size));
    if (m_isVisible) {
        m_text.clear();
        m_filter.append(text, m_text);
        m_output.write(m_text);
    } else {
        m_output.write(text);
    }
    return size;
}

void OutputStream::finish() {
    m_text.clear();
    m_filter.finish(m_text);
    m_output.write(m_text);
}

} // namespace vxattr
