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

/// One interned string. `count` changes from 0 to 1 and from 1 to 0 only under the lock of the
/// token's shard, so that every token in a shard is alive.
struct VXCORE_API StringToken {
    StringToken(std::string_view string, unsigned int stringHash)
        : count(1), hash(stringHash), next(nullptr), text(string) {}

    /// Adds references. The caller holds one already.
    void add_refs(unsigned int n) noexcept { add_to_count(count, n); }

    /// Drops references, and the token with the last one. In line only while one thread runs: the
    /// atomic path would cost more code in every caller than its call costs time.
    void drop_refs(unsigned int n) noexcept {
        unsigned int const held = count.load(std::memory_order_relaxed);
        if (held > n && is_single_threaded()) {
            count.store(held - n, std::memory_order_relaxed);
        } else {
            drop_shared_refs(n);
        }
    }

    void drop_shared_refs(unsigned int n) noexcept;

    std::atomic<unsigned int> count;
    unsigned int const hash;
    StringToken * next; // in its bucket
    std::string const text;
};

} // namespace impl

} // namespace vxcore
