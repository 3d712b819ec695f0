#pragma once

#include "vxattr/files/name_packages.h"

#include <string>

namespace CLI {
class App;
}

namespace vxattr {

/// How a value is read from a file.
struct ReadOptions {
    std::string from; // name of the form; empty: guessed from the contents
    NamePackages packages;
    unsigned long long maxSize = 1ull << 30; // bytes
    bool strict = false;                     // losses in reading JSON are failures
};

/// How a value is written to a file.
struct WriteOptions {
    std::string to;          // name of the form; empty: by the ending of the file's name
    unsigned int indent = 0; // blanks per level of JSON and text; 0: all on one line
    bool sorted = false;     // names in the order of their bytes
    bool plainNames = false; // names are not coded, even with packages
    std::string wrap;        // name for a value that JSON would show as a scalar; empty: none
};

void add_package_option(CLI::App & command, NamePackages & packages);
void add_max_size_option(CLI::App & command, unsigned long long & maxSize);

/// Adds these two options and all others for reading.
void add_read_options(CLI::App & command, ReadOptions & options);

void add_write_options(CLI::App & command, WriteOptions & options);

} // namespace vxattr
