#pragma once

#include "vxattribute/attribute_name_package.h"

#include <string>
#include <string_view>

/// Packages as text files that people edit and programs share: a name on each line, in any order,
/// and each line ends in a line feed. Blanks are part of a name.
namespace vxattribute {

/// The package of the names in the text of such a file.
///
/// @param file  What messages call it.
/// @raises As `read_name_list_file`, which has more to tell.
VXATTRIBUTE_API AttributeNamePackage::Ptr name_list_from_text(std::string_view text,
                                                              std::string const & file);

/// The names in the order of the package, a line each.
///
/// @param file  What messages call the target.
/// @raises error.vxattribute.name.package.serialization: a name is empty, has a line feed in it or
///         a carriage return at its end.
VXATTRIBUTE_API std::string name_list_to_text(AttributeNamePackage const & package,
                                              std::string const & file);

/// The package of the names in the file.
///
/// @raises error.vxattribute.name.package.serialization: the file cannot be read or starts with a
///         byte order mark, or a line is empty, ends in a carriage return or is cut off by the end
///         of the file.
///         error.vxattribute.name.package.duplicateName: a name comes twice.
///         Messages tell the file and the line, as "FILE:LINE: what".
VXATTRIBUTE_API AttributeNamePackage::Ptr read_name_list_file(std::string const & path);

/// Writes the names in the order of the package.
///
/// A new file is written beside the old one, as `path` and ".new", which must not be there, and
/// then takes its place: a failure leaves the old one as it was. A link is replaced itself, and the
/// rights are those of a new file.
///
/// @raises As `name_list_to_text`; error.vxattribute.name.package.serialization: the file cannot be
///         written.
VXATTRIBUTE_API void write_name_list_file(std::string const & path,
                                          AttributeNamePackage const & package);

} // namespace vxattribute
