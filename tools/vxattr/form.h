#pragma once

#include <string>
#include <string_view>

namespace vxattr {

/// How a value stands in a file.
enum class EForm { eGuess, eJson, eBinary, eText, eTrace };

/// The form of that name, which the option parser has checked; empty for `eGuess`.
EForm form_of(std::string const & name);

/// The form of a file by its first bytes: JSON where it starts as an object, an array or a
/// string does, text where it starts as an element of the text form does and holds no other bytes,
/// else binary.
EForm guess_form(std::string_view head);

} // namespace vxattr
