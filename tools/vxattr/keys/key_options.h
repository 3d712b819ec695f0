#pragma once

#include "vxattribute/secured_value.h"
#include "vxcrypto/key.h"

#include <initializer_list>
#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace vxattr {

/// Where a key comes from: a file, or a sealed key that the key in the file opens.
struct KeyOptions {
    std::string keyFile;
    std::string keyFormat = "auto"; // of read_key_file
    std::string dataKey;            // file of a sealed key; empty: the key in keyFile is used
};

/// The cipher and the readable facts of a new sealing.
struct SealingOptions {
    std::string cipher; // id; empty: chosen by the size of the key
    std::optional<std::string> annotation;
    std::optional<std::string> category;
    std::optional<std::string> keyId; // a UUID
};

/// Reads a key from a file, or from standard input for "-".
///
/// @param format  "raw", "hex", or "auto": see vxfile::EKeyFormat.
vxcrypto::Key read_key_file(std::string const & path, std::string const & format);

void add_key_options(CLI::App & command, KeyOptions & options);
void add_sealing_options(CLI::App & command, SealingOptions & options);

/// The key that seals and opens values: that of `keyFile`, or the one that it opens.
///
/// @raises Failure: a file cannot be used, or the key does not open `dataKey`.
vxcrypto::Key load_key(KeyOptions const & options);

/// The cipher with this id; where the id is empty, the one that takes a key of this size.
///
/// @param from  Names the source of the key in the message.
/// @raises Failure: no cipher takes a key of this size.
vxattribute::SecuredValue::ICipher const &
find_cipher(std::string const & id, vxcrypto::Key const & key, KeyOptions const & from);

/// The key id that the options ask for. Parts that they leave out are those of `old`.
vxattribute::SecuredValue::KeyId key_id_of(SealingOptions const & options,
                                           vxattribute::SecuredValue::KeyId const & old = {});

/// Refuses an output that would replace a file of a key: values sealed with it could never be
/// opened again.
///
/// @param keys  Paths; empty ones and "-" are ignored.
/// @raises UsageFailure: `out` is one of them.
void check_output_spares_keys(std::string const & out, std::initializer_list<std::string> keys);

} // namespace vxattr
