#include "vxfile/atomic_file.h"

#include "vxfile/failures_internal.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vxfile {

namespace {

constexpr std::size_t bufferSize = 1 << 16;
constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;

using impl::FileDescriptor;

/// Some file systems do not support this and fail with EINVAL.
bool sync_file(int file) noexcept {
    return ::fsync(file) == 0 || errno == EINVAL;
}

/// Opens the folder of `path`, to sync it.
FileDescriptor open_folder_of(std::string const & path) {
    std::string const folder = std::filesystem::path(path).parent_path().string();
    return FileDescriptor(
        ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC),
        FileDescriptor::EOwner::eUs);
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

/// A dot and six letters that no other process guesses.
std::string random_ending() {
    constexpr char letters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    unsigned char bytes[6] = {};
    if (::getrandom(bytes, sizeof bytes, 0) < 0) {
        return {};
    }
    std::string ending = ".";
    for (unsigned char const byte : bytes) {
        ending += letters[byte % (sizeof letters - 1)];
    }
    return ending;
}

[[noreturn]] void throw_exists(std::string const & path) {
    impl::throw_file(error::vxfile_write_exists, "{@path}: is there already, and is not replaced",
                     path, "vxfile::AtomicFile::commit()");
}

} // namespace

AtomicFile::AtomicFile(std::string path, AtomicFileOptions options)
    : m_path(std::move(path)), m_options(options) {
    try {
        open();
        m_sink.emplace(m_file.get(),
                       DescriptorSinkOptions{m_path, bufferSize, m_options.owner_only});
    } catch (...) {
        remove_new();
        throw;
    }
}

AtomicFile::~AtomicFile() {
    remove_new();
}

void AtomicFile::remove_new() noexcept {
    if (!m_newPath.empty()) {
        std::remove(m_newPath.c_str());
    }
}

void AtomicFile::fail(int reason) const {
    impl::throw_system(error::vxfile_write, "{@path}: cannot be written: {@reason}", m_path, reason,
                       "vxfile::AtomicFile::write()");
}

void AtomicFile::open() {
    struct stat info {};

    bool const isThere = ::stat(m_path.c_str(), &info) == 0;
    if (isThere && !m_options.replace) {
        throw_exists(m_path);
    }
    if (isThere && !S_ISREG(info.st_mode)) {
        open_direct();
        return;
    }
    if (isThere) {
        resolve_replaced();
    }
    open_new(isThere || m_options.owner_only ? ownerOnly : 0666);
    if (isThere && !m_options.owner_only) {
        ::fchmod(m_file.get(), info.st_mode & 07777u);
    }
}

void AtomicFile::open_direct() {
    m_file =
        FileDescriptor(::open(m_path.c_str(), O_WRONLY | O_CLOEXEC), FileDescriptor::EOwner::eUs);
    if (m_file.get() < 0) {
        impl::throw_open(m_path, errno, "vxfile::AtomicFile::AtomicFile()");
    }
}

void AtomicFile::resolve_replaced() {
    if (::access(m_path.c_str(), W_OK) != 0) {
        fail(errno); // a new file beside it would need no such right
    }
    std::error_code error;
    auto const target = std::filesystem::canonical(m_path, error);
    if (!error) {
        m_path = target.string();
    }
}

/// Creates the file by open(), which applies the mask of the process to the mode. The mask cannot
/// be read without changing it for a moment, in which another thread may create a file.
void AtomicFile::open_new(unsigned int mode) {
    constexpr int attempts = 100; // a name may be taken, by chance
    for (int i = 0; i != attempts; ++i) {
        std::string const ending = random_ending();
        if (ending.empty()) {
            break;
        }
        m_newPath = m_path + ending;
        m_file =
            FileDescriptor(::open(m_newPath.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode),
                           FileDescriptor::EOwner::eUs);
        if (m_file.get() >= 0) {
            return;
        }
        m_newPath.clear();
        if (errno != EEXIST) {
            break;
        }
    }
    fail(errno);
}

void AtomicFile::write(vxcore::ByteView bytes) {
    if (m_file.get() < 0) {
        fail(EBADF); // the number of the closed file may be that of another one now
    }
    m_sink->write(bytes);
}

void AtomicFile::finish() {
    if (m_file.get() < 0) {
        return;
    }
    m_sink->flush();
    if (is_direct()) {
        return;
    }
    int const reason = sync_file(m_file.get()) ? 0 : errno;
    bool const isClosed = m_file.close();
    if (!isClosed || reason != 0) {
        fail(reason != 0 ? reason : errno);
    }
}

void AtomicFile::put_in_place() {
    bool const isRenamed = m_options.replace
                               ? std::rename(m_newPath.c_str(), m_path.c_str()) == 0
                               : rename_to_free_name(m_newPath.c_str(), m_path.c_str());
    int const reason = errno;
    if (isRenamed) {
        m_newPath.clear();
    } else if (reason == EEXIST && !m_options.replace) {
        throw_exists(m_path);
    } else {
        fail(reason);
    }
}

void AtomicFile::commit() {
    finish();
    if (is_direct()) {
        return;
    }
    FileDescriptor const folder = open_folder_of(m_path); // before: it may lack memory
    put_in_place();
    // A folder may be writable and not readable, and is not synced then.
    if (folder.get() >= 0 && !sync_file(folder.get())) {
        impl::throw_system(error::vxfile_write_folder,
                           "{@path}: is in place, but its folder cannot be put on the disk: "
                           "{@reason}",
                           m_path, errno, "vxfile::AtomicFile::commit()");
    }
}

} // namespace vxfile
