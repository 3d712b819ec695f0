#include "vxattr/keys/key_file.h"

#include "vxattr/failure.h"
#include "vxcore/hex.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

namespace vxattr {

using vxcrypto::Key;

namespace {

constexpr unsigned int maxKeyFile = 4096; // bytes

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

/// The bytes of a file, or of standard input, as they are.
Key read_raw(std::string const & path) {
    bool const isInput = path == "-";
    int const file = isInput ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        throw Failure(path, std::string("cannot be opened: ") + std::strerror(errno));
    }
    Key bytes(maxKeyFile + 1); // a byte more shows a file that is too large
    ssize_t const size = read_until_full(file, bytes);
    int const reason = errno;
    if (!isInput) {
        ::close(file);
    }
    if (size < 0) {
        throw Failure(path, std::string("cannot be read: ") + std::strerror(reason));
    }
    if (size > static_cast<ssize_t>(maxKeyFile)) {
        throw Failure(path, "is too large for a key");
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

} // namespace

Key read_key_file(std::string const & path, std::string const & format) {
    Key raw = read_raw(path);
    unsigned int const size = size_without_blanks(raw);
    bool const isHex = is_hex(raw, size);
    if (format == "raw" || (format == "auto" && !isHex)) {
        return raw;
    }
    if (!isHex) {
        throw Failure(path, "is not a key in hexadecimal digits");
    }
    Key key(size / 2);
    for (unsigned int i = 0; i != key.size(); ++i) {
        key.mutable_data()[i] = static_cast<unsigned char>(
            vxcore::hex_value(raw.data()[2 * i]) * 16 + vxcore::hex_value(raw.data()[2 * i + 1]));
    }
    return key;
}

} // namespace vxattr
