#pragma once

#include "vxcore/string_token_impl.h"

/// The process-wide table of interned strings: a sharded hash table of reference-counted tokens.
namespace vxcore::impl {

/// Returns the token of `text` with one more reference; makes it if there is none.
///
/// @raises std::bad_alloc: no memory; the table is unchanged.
StringToken * intern_token(std::string_view text);

/// Returns the token of `text` with one more reference, or null if there is none.
StringToken * find_token(std::string_view text);

/// Drops `n` references, and with the last one the token.
void release_token(StringToken * token, unsigned int n) noexcept;

} // namespace vxcore::impl
