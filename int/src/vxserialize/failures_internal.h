#pragma once

#include "vxcore/error_code.h"
#include "vxserialize/element_kind.h"

#include <string>

/// Raises the errors of this library, out of line so that readers and writers stay small.
/// `function` is a literal: the qualified name of the operation.
namespace vxserialize::impl {

/// Raises `error.vxserialize.usage`. `detail` is a literal that says what was done wrong.
[[noreturn]] void throw_usage(char const * function, char const * detail);

/// Raises `error.vxserialize.depth`.
[[noreturn]] void throw_too_deep(char const * function);

/// Raises `error.vxserialize.depth` for a chain of errors.
[[noreturn]] void throw_chain_too_long(char const * function);

/// Raises `code` for data that is ill-formed at the byte `offset`. `detail` is a literal.
[[noreturn]] void throw_data(vxcore::ErrorCode const & code, char const * function,
                             unsigned long long offset, char const * detail);

/// The detail of the error for data after the end.
inline constexpr char const * more_data = "data follows the last element";

/// Raises `error.vxserialize.data.truncated`.
[[noreturn]] void throw_truncated(char const * function, unsigned long long offset);

/// Raises `error.vxserialize.data.type`: the element at `offset` is not an `expected` one.
[[noreturn]] void throw_type(char const * function, unsigned long long offset,
                             EElementKind expected, EElementKind found);

} // namespace vxserialize::impl
