#pragma once

#include <string_view>

namespace vxattr {

/// How a file holds a value. eTrace is for people, and only written.
enum class EForm { eJson, eBinary, eText, eTrace };

/// The form with this name, which the option parser has checked.
EForm form_of(std::string_view name);

/// The name of a form that files are read in.
char const * name_of(EForm form);

/// Guesses the form of a file from its first bytes: JSON where it starts like an object, an array
/// or a string; text where it starts like an element of the text form and all bytes are printable;
/// otherwise binary.
EForm guess_form(std::string_view head);

} // namespace vxattr
