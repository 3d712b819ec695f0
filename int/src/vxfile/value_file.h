#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/attribute_name_package_set.h"
#include "vxattribute/json_text.h"
#include "vxfile/atomic_file.h"
#include "vxfile/file_form.h"
#include "vxfile/input_file.h"

#include <optional>
#include <string>

/// Files that hold a value: one call reads it, one call writes it.
///
///     AttributeMap const config = read_map_file("server.json");
///     write_file_atomically("server.bin", config);
///
/// A file holds its value as JSON, or in the binary or the text form of `vxserialize`. Where the
/// options do not say which, the ending of its name does: ".json", ".bin" or ".txt".
namespace vxfile {

/// How a value is read from a file.
struct ReadFileOptions {
    /// None: as the ending of the name tells. If that tells none, it is guessed from the contents.
    std::optional<EFileForm> form = {};

    /// The packages that the names in the file may be coded with; null: none.
    vxattribute::AttributeNamePackageSet::Ptr packages = {};

    /// Reads a file whose names are coded with other packages. Its names are then made from the
    /// package's id: see AttributeNameDecoder.
    bool allow_unknown_packages = false;

    unsigned long long max_size = 1ull << 30; ///< in bytes; a larger file is refused
    vxattribute::JsonReadOptions json = {};   ///< for a file of JSON
};

/// Reads the one value of a file.
///
/// A file in the binary or the text form may hold a map without its type number, as
/// `AttributeMapBase::write` writes it.
///
/// @raises error.vxfile.open, error.vxfile.read, error.vxfile.size: see error_codes.h.
///         error.vxfile.content: it holds no value, or more than one. The message says why and
///         where, and the error of the reader is nested.
VXFILE_API vxattribute::AttributeValue read_file(std::string const & path,
                                                 ReadFileOptions const & options = {});

/// Reads the one map of a file.
///
/// @raises As `read_file`. error.vxfile.content: its value is not one map.
VXFILE_API vxattribute::AttributeMap read_map_file(std::string const & path,
                                                   ReadFileOptions const & options = {});

/// Reads the one value of an open file in that form. `form` and `max_size` of the options do not
/// count.
///
/// @raises As `read_file`.
VXFILE_API vxattribute::AttributeValue read_value(InputFile & file, EFileForm form,
                                                  ReadFileOptions const & options = {});

/// How a value is written to a file.
struct WriteFileOptions {
    std::optional<EFileForm> form = {}; ///< none: as the ending of the name tells

    /// Codes the names in the binary and the text form; null: names are written as they are.
    vxattribute::AttributeNamePackageSet::Ptr packages = {};

    unsigned int indent = 2;  ///< blanks per level of JSON and text; 0: all on one line
    bool sorted_names = true; ///< the same value makes the same file; costs a sort of each map
    AtomicFileOptions file = {};
};

/// Writes the value to a file as AtomicFile does: a reader sees the old file or the whole new one.
///
/// JSON is read back only if the value consists of maps or is a list: see `value_to_json`. The
/// other forms take any value.
///
/// @raises error.vxfile.form: neither the options nor the ending of the name tell the form. No file
///         is touched then.
///         error.vxfile.write: as AtomicFile. What the writers of the form raise passes through,
///         and the old file stays.
VXFILE_API void write_file_atomically(std::string const & path,
                                      vxattribute::AttributeValue const & value,
                                      WriteFileOptions const & options = {});

/// Writes the value to a sink in that form. JSON and text end in a line feed. `form` and `file` of
/// the options do not count.
///
/// @raises What the sink and the writers of the form raise.
VXFILE_API void write_value(vxcore::OutputSink & sink, vxattribute::AttributeValue const & value,
                            EFileForm form, WriteFileOptions const & options = {});

} // namespace vxfile
