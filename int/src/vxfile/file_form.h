#pragma once

#include "vxfile/export.h"

#include <optional>
#include <string_view>

namespace vxfile {

/// How a file holds a value: as JSON, or in the binary or the text form of `vxserialize`.
enum class EFileForm { eJson, eBinary, eText };

/// "json", "binary" or "text", for messages and options.
VXFILE_API char const * name_of(EFileForm form) noexcept;

/// The form that the ending of a file's name tells: ".json", ".bin" or ".txt"; otherwise none.
VXFILE_API std::optional<EFileForm> form_of_ending(std::string_view path) noexcept;

/// Guesses the form of a file from its first bytes: JSON where it starts like an object, an array
/// or a string; text where it starts like an element of the text form and all bytes are printable;
/// otherwise binary.
///
///     EFileForm const form = guess_form(file.head());
VXFILE_API EFileForm guess_form(std::string_view head) noexcept;

} // namespace vxfile
