#pragma once

#include <atomic>
#include <string>
#include <string_view>

/// The process-wide table of interned strings: a sharded hash table of reference-counted tokens.
namespace vxcore::impl {

/// One interned string. `count` changes from 0 to 1 and from 1 to 0 only under the lock of the
/// token's shard, so that every token in a shard is alive.
struct StringToken {
    StringToken(std::string_view string, unsigned int stringHash)
        : count(1), hash(stringHash), next(nullptr), text(string) {}

    std::atomic<unsigned int> count;
    unsigned int const hash;
    StringToken * next;
    std::string const text;
};

/// Returns the token of `text` with one more reference; makes it if there is none.
///
/// @raises std::bad_alloc: no memory; the table is unchanged.
StringToken * intern_token(std::string_view text);

/// Returns the token of `text` with one more reference, or null if there is none.
StringToken * find_token(std::string_view text);

/// Drops one reference, and with the last one the token.
void release_token(StringToken * token) noexcept;

} // namespace vxcore::impl
