#pragma once

#include <cstddef>

namespace vxjson::impl {

/// Raises error.vxjson.writer.unexpected.character. The message may contain `{@offset}`.
[[noreturn]] void throw_character(char const * message, std::size_t offset, char const * function);

} // namespace vxjson::impl
