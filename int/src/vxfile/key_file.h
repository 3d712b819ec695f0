#pragma once

#include "vxcrypto/key.h"
#include "vxfile/export.h"

#include <string>

/// Files that hold a key. No memory but that of keys, which is wiped, ever holds its bytes.
///
///     vxcrypto::Key const key = read_key_file("disk.key");
///     write_key_file("new.key", vxcrypto::Key::random());
namespace vxfile {

/// How a file holds a key: its bytes as they are, or as hexadecimal digits, with white space after
/// them or not. `eAuto` reads a file as digits if it holds nothing but an even number of them.
enum class EKeyFormat { eAuto, eRaw, eHex };

/// How a key is read.
struct ReadKeyOptions {
    EKeyFormat format = EKeyFormat::eAuto;
    bool allow_others = false; ///< reads a file that the group or others may read
};

/// Reads a key of up to 4096 bytes of file.
///
/// @raises error.vxfile.open, error.vxfile.read
///         error.vxfile.key.access: its permissions let the group or others read it. Repair it with
///         `chmod go-r`, and consider whether the key is still a secret.
///         error.vxfile.key.size: the file has more than 4096 bytes.
///         error.vxfile.key.form: it is to be hexadecimal and is not.
VXFILE_API vxcrypto::Key read_key_file(std::string const & path,
                                       ReadKeyOptions const & options = {});

/// The same from an open file, such as standard input, up to its end.
///
/// @param descriptor  Stays open.
/// @param name        What messages call the file.
VXFILE_API vxcrypto::Key read_key(int descriptor, std::string const & name,
                                  ReadKeyOptions const & options = {});

/// How a key is written.
struct WriteKeyOptions {
    EKeyFormat format = EKeyFormat::eHex; ///< eAuto means hexadecimal, which ends in a line feed
    bool replace = false;                 ///< if not, a file that is there already is left alone
};

/// Writes a key to a file that only its owner may read. The file appears as a whole or not at all:
/// see AtomicFile.
///
/// By default no file is replaced: values that were sealed with a lost key cannot be opened.
///
/// @raises As AtomicFile.
VXFILE_API void write_key_file(std::string const & path, vxcrypto::Key const & key,
                               WriteKeyOptions const & options = {});

} // namespace vxfile
