#pragma once

#include "vxattribute/attribute_name_package.h"
#include "vxfile/export.h"
#include "vxfile/fwd.h"

#include <string>

namespace vxfile {

/// Reads a package of names from a file: a list of names, one on each line, or what
/// `AttributeNamePackage::write` wrote.
///
///     auto const packages =
///         AttributeNamePackageSet::create(read_name_list_file("server.names"));
///     AttributeMap const config = read_map_file("server.bin", {.packages = packages});
///
/// @param max_size  Bytes. A larger file is refused.
/// @raises error.vxfile.open, error.vxfile.read, error.vxfile.size: see error_codes.h.
///         error.vxfile.content: it starts like a stored package and holds none.
///         Of a list of names, what `vxattribute::name_list_from_text` raises.
VXFILE_API vxattribute::AttributeNamePackage::Ptr
read_name_list_file(std::string const & path, unsigned long long max_size = 1ull << 28);

/// Writes the names as a list, one on each line, in place of the file, which readers see as it was
/// or whole.
///
/// @raises What `vxattribute::name_list_to_text` raises; error.vxfile.write: as AtomicFile.
VXFILE_API void write_name_list_file(std::string const & path,
                                     vxattribute::AttributeNamePackage const & package);

/// Reads a package from an open file.
VXFILE_API vxattribute::AttributeNamePackage::Ptr read_name_list(InputFile & file);

} // namespace vxfile
