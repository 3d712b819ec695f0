#pragma once

#include "vxcrypto/key.h"
#include "vxserialize/memory_list.h"

#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

/// Reads and writes whole files.
namespace sealed_config {

using File = std::unique_ptr<std::FILE, int (*)(std::FILE *)>;

inline File open_file(char const * path, char const * mode) {
    File file(std::fopen(path, mode), std::fclose);
    if (!file) {
        throw std::runtime_error(std::string("cannot open ") + path);
    }
    std::setvbuf(file.get(), nullptr, _IONBF, 0); // a key leaves no copy in a buffer
    return file;
}

inline void write_file(char const * path, void const * data, unsigned int size) {
    File const file = open_file(path, "wb");
    if (std::fwrite(data, 1, size, file.get()) != size) {
        throw std::runtime_error(std::string("cannot write ") + path);
    }
}

inline void write_file(char const * path, vxserialize::MemoryList const & list) {
    std::string bytes(list.size(), '\0');
    list.read_at(0, bytes.data(), list.size());
    write_file(path, bytes.data(), list.size());
}

/// Writes the bytes of a key to a file that only its owner may read.
inline void write_key_file(char const * path, vxcrypto::Key const & key) {
    int const file = ::open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, S_IRUSR | S_IWUSR);
    bool const isWritten = file >= 0 && ::fchmod(file, S_IRUSR | S_IWUSR) == 0 &&
                           ::write(file, key.data(), key.size()) == ssize_t{key.size()};
    if (file >= 0) {
        ::close(file);
    }
    if (!isWritten) {
        throw std::runtime_error(std::string("cannot write ") + path);
    }
}

inline vxcore::RefCountPtr<vxserialize::MemoryList const> read_file(char const * path) {
    File const file = open_file(path, "rb");
    auto list = vxserialize::MemoryList::create();
    char buffer[4096];
    while (std::size_t const size = std::fread(buffer, 1, sizeof buffer, file.get())) {
        list->append(buffer, static_cast<unsigned int>(size));
    }
    return list;
}

/// Reads a key of 32 bytes.
inline vxcrypto::Key read_key_file(char const * path) {
    File const file = open_file(path, "rb");
    vxcrypto::Key key(32);
    if (std::fread(key.mutable_data(), 1, key.size(), file.get()) != key.size() ||
        std::fgetc(file.get()) != EOF) {
        throw std::runtime_error(std::string("not a key of 32 bytes: ") + path);
    }
    return key;
}

} // namespace sealed_config
