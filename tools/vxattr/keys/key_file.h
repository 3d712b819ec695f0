#pragma once

#include "vxcrypto/key.h"

#include <string>

namespace vxattr {

/// Reads a key from a file, or from standard input for "-": bytes as they are, or hexadecimal
/// digits. No memory but that of keys, which is wiped, ever holds the bytes.
///
/// @param format  "raw", "hex", or "auto": hexadecimal when the file holds nothing but an even
///                number of digits, followed by white space or not.
/// @raises Failure: the file cannot be read, has more than 4096 bytes, or is to be hexadecimal and
///         is not.
vxcrypto::Key read_key_file(std::string const & path, std::string const & format);

} // namespace vxattr
