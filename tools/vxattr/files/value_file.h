#pragma once

#include "vxattr/files/file_options.h"
#include "vxattr/files/output.h"
#include "vxattribute/attribute_map.h"

#include <string>

namespace vxattr {

/// Facts about a file beside its value.
struct FileFacts {
    std::string form;
    unsigned long long bytes = 0;
};

/// Reads the one value of a file.
///
/// Binary and text files may hold a map without its type number, as `AttributeMapBase::write`
/// writes it. Coded names need their package only when `options` has packages. Otherwise, names
/// are made from the package's id.
///
/// Losses in reading JSON are reported on standard error, or are failures where `strict` is set.
///
/// @param facts  Receives facts about the file; may be null.
/// @raises Failure: the file cannot be used, or more follows the value.
vxattribute::AttributeValue read_value(std::string const & path, ReadOptions const & options,
                                       FileFacts * facts = nullptr);

/// Reads the one map of a file.
///
/// @raises Failure: as read_value, and when the value is not one map.
vxattribute::AttributeMap read_map(std::string const & path, ReadOptions const & options);

/// Checks the options before an input of any size is read.
///
/// @raises UsageFailure: neither the options nor the ending of `path` determine the form.
void check_output_form(std::string const & path, WriteOptions const & options);

/// Writes the value. The caller commits the output.
///
/// @param path      Of the output: its ending determines the form where the options do not.
/// @param packages  Code the names in binary and text, unless `plainNames` is set.
void write_value(Output & output, std::string const & path,
                 vxattribute::AttributeValue const & value, WriteOptions const & options,
                 NamePackages const & packages);

} // namespace vxattr
