#pragma once

#include "vxcore/string_token_impl.h"

/// The process-wide table of interned strings: a sharded hash table of reference-counted tokens.
namespace vxcore::impl {

/// Returns the token of `text` with one more reference; makes it if there is none.
///
/// @raises std::bad_alloc: no memory; the table is unchanged.
StringToken * intern_token(std::string_view text);

/// Returns the token of `text` with one more reference, or null if no key of it is alive.
StringToken * find_token(std::string_view text);

} // namespace vxcore::impl
