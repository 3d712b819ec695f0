#pragma once

#include "vxcrypto/key.h"
#include "vxserialize/fwd.h"

namespace vxattribute::impl {

/// Writes the bytes of a key as one binary element, which is also the form of a value that is one
/// Binary.
void write_key_as_binary(vxserialize::Writer & writer, vxcrypto::Key const & key);

/// Reads a value that is one Binary as a key. No other copy of its bytes is made.
///
/// @raises error.vxattribute.value.type.mismatch: a value of another type.
/// @raises error.vxattribute.value.type.unknown: of no type at all.
/// @raises error.vxattribute.value.cardinality.expectSingle: no or several elements.
vxcrypto::Key read_key_as_binary(vxserialize::MemoryReader & reader);

} // namespace vxattribute::impl
