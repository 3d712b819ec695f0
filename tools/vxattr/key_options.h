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

/// Where a key comes from: a file, or a sealed key that the file's key opens.
struct KeyOptions {
    std::string keyFile;
    std::string keyFormat = "auto";
    std::string dataKey; // file of a sealed key; empty: the file's key is used itself
};

/// How a new sealing is marked.
struct SealingOptions {
    std::string cipher; // id; empty: by the size of the key
    std::optional<std::string> annotation;
    std::optional<std::string> category;
    std::optional<std::string> keyId; // a UUID
};

void add_key_options(CLI::App & command, KeyOptions & options);
void add_sealing_options(CLI::App & command, SealingOptions & options);

/// The key in a file: bytes as they are, or hexadecimal digits. The bytes go into the key's own
/// memory and nowhere else.
///
/// @param format  "raw", "hex", or "auto": hexadecimal when the file holds nothing but an even
///                number of digits and white space behind them.
vxcrypto::Key read_key_file(std::string const & path, std::string const & format);

/// The key that seals and opens values.
vxcrypto::Key load_key(KeyOptions const & options);

/// The cipher of that id, or the one that takes a key of that size where the id is empty.
///
/// @param from  Where the key comes from, for the message.
/// @raises Failure: there is none.
vxattribute::SecuredValue::ICipher const &
find_cipher(std::string const & id, vxcrypto::Key const & key, KeyOptions const & from);

/// The key id that is asked for; what is not given stays as in `old`.
vxattribute::SecuredValue::KeyId key_id_of(SealingOptions const & options,
                                           vxattribute::SecuredValue::KeyId const & old = {});

/// Refuses an output that would take the place of a key: what it seals could never be opened again.
///
/// @param keys  Files; empty ones do not count.
/// @raises UsageFailure: `out` is one of them.
void check_output_spares_keys(std::string const & out, std::initializer_list<std::string> keys);

} // namespace vxattr
