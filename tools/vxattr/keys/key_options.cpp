#include "vxattr/keys/key_options.h"

#include "vxattr/failure.h"
#include "vxattr/files/value_file.h"
#include "vxcore/text_conversion.h"
#include "vxfile/key_file.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <unistd.h>

namespace vxattr {

using namespace vxattribute;
using vxcrypto::Key;

Key read_key_file(std::string const & path, std::string const & format) {
    using enum vxfile::EKeyFormat;
    vxfile::ReadKeyOptions const options = {.format = format == "raw"   ? eRaw
                                                      : format == "hex" ? eHex
                                                                        : eAuto,
                                            .allow_others = true};
    return path == "-" ? vxfile::read_key(STDIN_FILENO, path, options)
                       : vxfile::read_key_file(path, options);
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
