#pragma once

#include "form.h"
#include "name_packages.h"
#include "output.h"

#include "vxattribute/attribute_map.h"

#include <string>

namespace CLI {
class App;
}

namespace vxattr {

/// How a value is read from a file.
struct ReadOptions {
    std::string from; // name of the form; empty: guessed
    NamePackages packages;
    unsigned long long maxSize = 1ull << 30; // bytes
    bool strict = false;
};

/// How a value is written to a file.
struct WriteOptions {
    std::string to; // name of the form; empty: by the ending of the file's name
    unsigned int indent = 0;
    bool sorted = false;
    bool plainNames = false;
    std::string wrap;
};

/// What is told of a file beside its value.
struct FileFacts {
    std::string form;
    unsigned long long bytes = 0;
};

void add_read_options(CLI::App & command, ReadOptions & options);
void add_write_options(CLI::App & command, WriteOptions & options);

/// The value of a file, which holds nothing else.
///
/// Binary and text files may hold a map without the type in front, as `AttributeMapBase::write`
/// leaves it. Names that a package codes are read with or without the package: without one they are
/// made from its id. When packages are given and one is missing, that is a failure.
///
/// What reading JSON loses is told on standard error, or is a failure where `strict` is set.
///
/// @param facts  Receives more about the file; may be null.
vxattribute::AttributeValue read_value(std::string const & path, ReadOptions const & options,
                                       FileFacts * facts = nullptr);

/// The one map of a file.
///
/// @raises Failure: its value is something else.
vxattribute::AttributeMap read_map(std::string const & path, ReadOptions const & options);

/// Tells bad options before an input of any size is read.
///
/// @raises UsageFailure: neither the options nor the ending of the output's name tell the form.
void check_output_form(std::string const & path, WriteOptions const & options);

/// Writes the value; the caller commits.
///
/// @param path      Of the output: its ending tells the form that was not given.
/// @param packages  Code the names of binary and text, unless `plainNames` is set.
void write_value(Output & output, std::string const & path,
                 vxattribute::AttributeValue const & value, WriteOptions const & options,
                 NamePackages const & packages);

} // namespace vxattr
