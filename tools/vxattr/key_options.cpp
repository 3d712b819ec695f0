#include "key_options.h"

#include "failure.h"
#include "value_file.h"

#include "vxcore/text_conversion.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace vxattr {

using namespace vxattribute;
using vxcrypto::Key;

namespace {

constexpr unsigned int maxKeyFile = 4096; // bytes

int hex_value(unsigned char c) noexcept {
    return c >= '0' && c <= '9'   ? c - '0'
           : c >= 'a' && c <= 'f' ? c - 'a' + 10
           : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                  : -1;
}

/// The bytes of a file, or of standard input, in a key, which wipes them. No buffer but the key's
/// sees them.
Key read_raw(std::string const & path) {
    bool const isInput = path == "-";
    int const file = isInput ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        throw Failure(path, std::string("cannot be opened: ") + std::strerror(errno));
    }
    Key bytes(maxKeyFile + 1);
    unsigned int size = 0;
    ssize_t count = 0;
    do {
        count = ::read(file, bytes.mutable_data() + size, bytes.size() - size);
        size += count > 0 ? static_cast<unsigned int>(count) : 0;
    } while (count > 0 || (count < 0 && errno == EINTR));
    int const reason = errno;
    if (!isInput) {
        ::close(file);
    }
    if (count < 0) {
        throw Failure(path, std::string("cannot be read: ") + std::strerror(reason));
    }
    if (size > maxKeyFile) {
        throw Failure(path, "is too large for a key");
    }
    return Key(bytes.data(), size);
}

/// How many bytes stand before the white space at the end.
unsigned int size_without_blanks(Key const & key) noexcept {
    unsigned int size = key.size();
    while (size != 0 && (key.data()[size - 1] == '\n' || key.data()[size - 1] == '\r' ||
                         key.data()[size - 1] == ' ' || key.data()[size - 1] == '\t')) {
        --size;
    }
    return size;
}

} // namespace

Key read_key_file(std::string const & path, std::string const & format) {
    Key raw = read_raw(path);
    unsigned int const size = size_without_blanks(raw);
    bool const isHex = size != 0 && size % 2 == 0 &&
                       std::all_of(raw.data(), raw.data() + size,
                                   [](unsigned char c) { return hex_value(c) >= 0; });
    if (format == "raw" || (format == "auto" && !isHex)) {
        return raw;
    }
    if (!isHex) {
        throw Failure(path, "is not a key in hexadecimal digits");
    }
    Key key(size / 2);
    for (unsigned int i = 0; i != key.size(); ++i) {
        key.mutable_data()[i] = static_cast<unsigned char>(hex_value(raw.data()[2 * i]) * 16 +
                                                           hex_value(raw.data()[2 * i + 1]));
    }
    return key;
}

Key load_key(KeyOptions const & options) {
    Key key = read_key_file(options.keyFile, options.keyFormat);
    if (options.dataKey.empty()) {
        return key;
    }
    return with_place(options.dataKey, [&] {
        AttributeValue const sealed = read_value(options.dataKey, {});
        return sealed.get<SecuredValue>().extract_binary_as_key(
            key, SecuredValue::strict_cipher_provider(), nullptr);
    });
}

SecuredValue::ICipher const & find_cipher(std::string const & id, Key const & key,
                                          KeyOptions const & from) {
    SecuredValue::ICipherProvider const & provider = SecuredValue::strict_cipher_provider();
    if (!id.empty()) {
        return *provider.find_cipher(id);
    }
    for (char const * const known : {"EAX_AES128", "EAX_AES256"}) {
        if (SecuredValue::CipherPtr const cipher = provider.find_cipher(known);
            cipher->keysize() == key.size()) {
            return *cipher;
        }
    }
    throw Failure(from.dataKey.empty() ? from.keyFile : from.dataKey,
                  "no cipher takes a key of " + vxcore::to_string(key.size()) +
                      " bytes, only of 16 or 32");
}

SecuredValue::KeyId key_id_of(SealingOptions const & options, SecuredValue::KeyId const & old) {
    vxcore::Uuid id = old.instance_id();
    if (options.keyId) {
        vxcore::Uuid::parse(*options.keyId, id); // the option was checked
    }
    return {options.category.value_or(old.category()), id};
}

void check_output_spares_keys(std::string const & out, std::initializer_list<std::string> keys) {
    if (out.empty() || out == "-") {
        return;
    }
    auto const place = [](std::string const & path) {
        return std::filesystem::weakly_canonical(std::filesystem::absolute(path));
    };
    for (std::string const & key : keys) {
        if (!key.empty() && key != "-" && place(key) == place(out)) {
            throw UsageFailure("OUT is the file of a key, which would be lost");
        }
    }
}

void add_key_options(CLI::App & command, KeyOptions & options) {
    command.add_option("--key-file", options.keyFile, "File of the key, raw or hexadecimal")
        ->required();
    command.add_option("--key-format", options.keyFormat, "raw, hex or auto")
        ->check(CLI::IsMember({"raw", "hex", "auto"}))
        ->capture_default_str();
    command.add_option("--data-key", options.dataKey,
                       "File of a sealed key: --key-file opens it, and it is used instead");
}

void add_sealing_options(CLI::App & command, SealingOptions & options) {
    command
        .add_option("--cipher", options.cipher,
                    "EAX_AES128 (key of 16 bytes) or EAX_AES256 (32); else by the key's size")
        ->check(CLI::IsMember({"EAX_AES128", "EAX_AES256"}));
    command.add_option("--annotation", options.annotation,
                       "Text that stays readable and is protected against change");
    command.add_option("--category", options.category, "Category of the key, readable");
    command.add_option("--key-id", options.keyId, "Which key of the category: a UUID, readable")
        ->check(CLI::Validator(
            [](std::string const & text) {
                vxcore::Uuid id;
                return std::string(vxcore::Uuid::parse(text, id) ? "" : "not a UUID: " + text);
            },
            "UUID"));
}

} // namespace vxattr
