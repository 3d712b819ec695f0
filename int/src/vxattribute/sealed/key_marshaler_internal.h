#pragma once

#include "vxcrypto/key.h"
#include "vxserialize/fwd.h"

namespace vxattribute::impl {

/// Writes the bytes of a key as one binary element. A value that is one Binary has the same form.
void write_key_as_binary(vxserialize::Writer & writer, vxcrypto::Key const & key);

/// Reads a value that is one Binary as a key. No other copy of its bytes is made.
///
/// @raises error.vxattribute.value.type.mismatch: a value of another type.
/// @raises error.vxattribute.value.type.unknown: a type tag that does not exist.
/// @raises error.vxattribute.value.cardinality.expectSingle: no or several elements.
vxcrypto::Key read_key_as_binary(vxserialize::MemoryReader & reader);

} // namespace vxattribute::impl
