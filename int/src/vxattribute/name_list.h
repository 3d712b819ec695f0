#pragma once

#include "vxattribute/attribute_name_package.h"

#include <string>
#include <string_view>

/// Packages as text, for example in a file that people edit and programs share. Each line is a name
/// and ends in a line feed. The order is free. Blanks are part of a name.
namespace vxattribute {

/// Makes a package of the names in the text.
///
///     auto const package = name_list_from_text("host\nport\n", "server.names");
///
/// @param file  What messages call the text, as in "FILE:LINE: what".
/// @raises error.vxattribute.name.package.serialization: the text starts with a byte order mark, or
///         a line is empty, ends in a carriage return or lacks its line feed.
///         error.vxattribute.name.package.duplicateName: a name comes twice.
VXATTRIBUTE_API AttributeNamePackage::Ptr name_list_from_text(std::string_view text,
                                                              std::string const & file);

/// The names in the order of the package, each on a line. `name_list_from_text` reads it back.
///
/// @param file  What messages call the target.
/// @raises error.vxattribute.name.package.serialization: a name is empty, contains a line feed or
///         ends in a carriage return, or the first one starts with a byte order mark.
VXATTRIBUTE_API std::string name_list_to_text(AttributeNamePackage const & package,
                                              std::string const & file);

} // namespace vxattribute
