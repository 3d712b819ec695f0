#pragma once

// Included by string_key.h; not for direct use.

#include "vxcore/export.h"
#include "vxcore/single_thread_impl.h"

#include <atomic>
#include <string>
#include <string_view>

namespace vxcore {

VXCORE_API extern std::string const & g_emptyString; // its contract is in text_conversion.h

namespace impl {

/// One interned string, with its place in the table.
///
/// `count` changes from 0 and to 0 only under the lock of the token's shard. A token with a count
/// of 0 is kept for the next key of its text, and belongs to the shard.
struct VXCORE_API StringToken {
    StringToken(std::string_view string, unsigned int tablePosition, unsigned char shardIndex)
        : text(string), position(tablePosition), shard(shardIndex) {}

    /// Adds references. The caller holds one already.
    void add_refs(unsigned int n) noexcept { add_to_count(count, n); }

    /// Drops references. In line only while one thread runs: the atomic path would cost more code
    /// in every caller than its call costs time.
    void drop_refs(unsigned int n) noexcept {
        unsigned int const held = count.load(std::memory_order_relaxed);
        if (held > n && is_single_threaded()) {
            count.store(held - n, std::memory_order_relaxed);
        } else {
            drop_shared_refs(n);
        }
    }

    void drop_shared_refs(unsigned int n) noexcept;

    unsigned int get_hash() noexcept {
        unsigned int const made = hash.load(std::memory_order_relaxed);
        return made != 0 ? made : make_hash();
    }

    unsigned int make_hash() noexcept;

    std::atomic<unsigned int> count{1};
    std::atomic<unsigned int> hash{0}; // 0 until it is asked for
    std::string const text;
    StringToken * next = nullptr; // in its bucket
    unsigned int position;        // its hash in the table
    unsigned short slot = 0;      // while the count is 0: where the shard keeps it
    unsigned char const shard;
};

/// Frees the tokens that are kept for reuse.
VXCORE_API void free_kept_tokens() noexcept;

} // namespace impl

} // namespace vxcore
