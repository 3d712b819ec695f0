#pragma once

#include "vxattribute/attribute_name_package.h"

#include <string>
#include <string_view>

/// Packages as text that people edit and programs share, for example as a file: a name on each
/// line, in any order, and each line ends in a line feed. Blanks are part of a name.
namespace vxattribute {

/// The package of the names in the text.
///
/// @param file  What messages call the text, as in "FILE:LINE: what".
/// @raises error.vxattribute.name.package.serialization: the text starts with a byte order mark, or
///         a line is empty, ends in a carriage return or is cut off by the end of the text.
///         error.vxattribute.name.package.duplicateName: a name comes twice.
VXATTRIBUTE_API AttributeNamePackage::Ptr name_list_from_text(std::string_view text,
                                                              std::string const & file);

/// The names in the order of the package, a line each.
///
/// @param file  What messages call the target.
/// @raises error.vxattribute.name.package.serialization: a name is empty, has a line feed in it or
///         a carriage return at its end, or the first one starts with a byte order mark.
VXATTRIBUTE_API std::string name_list_to_text(AttributeNamePackage const & package,
                                              std::string const & file);

} // namespace vxattribute
