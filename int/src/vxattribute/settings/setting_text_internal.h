#pragma once

#include "vxattribute/settings.h"

#include <string>

/// Parts of messages and tables about settings.
namespace vxattribute::impl {

/// The elements with commas between them, Strings in quotes, the first eight of a list. Elements
/// that have no short text are shown by the name of their type. Empty without elements.
std::string short_text(AttributeValue const & value);

/// The texts with commas between them.
std::string choices_text(Setting const & setting);

/// The range in words, such as "from 1 to 65535" or "at least 0". Empty without limits.
std::string range_text(AttributeValue const & minimum, AttributeValue const & maximum);

/// The type of the elements, such as "Integer" or "number".
std::string type_text(Setting const & setting);

/// The described name of `settings`, first or alternate, that is nearest to a misspelt one. Null
/// when none is near: for three letters of it, one may differ.
///
/// @cost  O(settings * length^2); names of more than 64 bytes are not compared.
AttributeName const * near_name(AttributeName const & misspelt, Settings const & settings);

} // namespace vxattribute::impl
