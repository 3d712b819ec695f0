#include "vxfile/key_file.h"

#include "vxcore/error_composer.h"
#include "vxcore/hex.h"
#include "vxfile/atomic_file.h"
#include "vxfile/failures_internal.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace vxfile {

using vxcrypto::Key;

namespace {

constexpr unsigned int maxKeyFile = 4096; // bytes
constexpr char readFunction[] = "vxfile::read_key()";

void check_access(int file, std::string const & name) {
    struct stat info {};

    if (::fstat(file, &info) != 0) {
        impl::throw_open(name, errno, readFunction);
    }
    if ((info.st_mode & (S_IRGRP | S_IROTH)) != 0) {
        impl::throw_file(error::vxfile_key_access,
                         "{@path}: holds a key, and others than its owner may read it", name,
                         readFunction);
    }
}

/// Reads until `bytes` is full or the file ends.
///
/// @return the number of bytes read, or -1 with the reason in `errno`.
ssize_t read_until_full(int file, Key & bytes) noexcept {
    unsigned int size = 0;
    ssize_t count = 0;
    do {
        count = ::read(file, bytes.mutable_data() + size, bytes.size() - size);
        size += count > 0 ? static_cast<unsigned int>(count) : 0;
    } while (count > 0 || (count < 0 && errno == EINTR));
    return count < 0 ? count : static_cast<ssize_t>(size);
}

/// The bytes of a file as they are.
Key read_raw(int file, std::string const & name) {
    Key bytes(maxKeyFile + 1); // a byte more shows a file that is too large
    ssize_t const size = read_until_full(file, bytes);
    if (size < 0) {
        impl::throw_system(error::vxfile_read, "{@path}: cannot be read: {@reason}", name, errno,
                           readFunction);
    }
    if (size > static_cast<ssize_t>(maxKeyFile)) {
        impl::throw_file(error::vxfile_key_size, "{@path}: is too large for a key", name,
                         readFunction);
    }
    return Key(bytes.data(), static_cast<unsigned int>(size));
}

/// The size without white space at the end, in bytes.
unsigned int size_without_blanks(Key const & key) noexcept {
    constexpr std::string_view blanks = "\n\r \t";
    unsigned int size = key.size();
    while (size != 0 && blanks.find(static_cast<char>(key.data()[size - 1])) != blanks.npos) {
        --size;
    }
    return size;
}

/// Whether the first `size` bytes are hexadecimal digits of whole bytes.
bool is_hex(Key const & raw, unsigned int size) {
    return size != 0 && size % 2 == 0 &&
           std::all_of(raw.data(), raw.data() + size,
                       [](unsigned char c) { return vxcore::hex_value(c) >= 0; });
}

/// The digits of a key, and a line feed.
Key hex_line_of(Key const & key) {
    Key line(2 * key.size() + 1);
    unsigned char * at = line.mutable_data();
    for (unsigned char const byte : vxcore::ByteView(key.data(), key.size())) {
        *at++ = static_cast<unsigned char>(vxcore::hex_digit(byte >> 4));
        *at++ = static_cast<unsigned char>(vxcore::hex_digit(byte));
    }
    *at = '\n';
    return line;
}

} // namespace

Key read_key(int descriptor, std::string const & name, ReadKeyOptions const & options) {
    if (!options.allow_others) {
        check_access(descriptor, name);
    }
    Key raw = read_raw(descriptor, name);
    unsigned int const size = size_without_blanks(raw);
    bool const isHex = is_hex(raw, size);
    if (options.format == EKeyFormat::eRaw || (options.format == EKeyFormat::eAuto && !isHex)) {
        return raw;
    }
    if (!isHex) {
        impl::throw_file(error::vxfile_key_form, "{@path}: is not a key in hexadecimal digits",
                         name, readFunction);
    }
    Key key(size / 2);
    for (unsigned int i = 0; i != key.size(); ++i) {
        key.mutable_data()[i] = static_cast<unsigned char>(
            vxcore::hex_value(raw.data()[2 * i]) * 16 + vxcore::hex_value(raw.data()[2 * i + 1]));
    }
    return key;
}

Key read_key_file(std::string const & path, ReadKeyOptions const & options) {
    impl::FileDescriptor const file(::open(path.c_str(), O_RDONLY | O_CLOEXEC),
                                    impl::FileDescriptor::EOwner::eUs);
    if (file.get() < 0) {
        impl::throw_open(path, errno, readFunction);
    }
    return read_key(file.get(), path, options);
}

void write_key_file(std::string const & path, Key const & key, WriteKeyOptions const & options) {
    AtomicFile file(path, {.owner_only = true, .replace = options.replace});
    if (options.format == EKeyFormat::eRaw) {
        file.write({key.data(), key.size()});
    } else {
        Key const line = hex_line_of(key);
        file.write({line.data(), line.size()});
    }
    file.commit();
}

} // namespace vxfile
