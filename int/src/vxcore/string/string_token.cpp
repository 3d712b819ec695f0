#include "vxcore/string/string_token_internal.h"
#include "vxcore/string/token_shard_internal.h"

#include <array>

namespace vxcore::impl {

namespace {

/// So many that threads rarely wait for the lock of one.
constinit std::array<TokenShard, 1u << TokenShard::index_bits> shards;

unsigned int hash_of(std::string_view text) {
    return text_hash().quick(text);
}

TokenShard & shard_of(unsigned int hash) noexcept {
    return shards[TokenShard::index(hash)];
}

/// `dlclose` calls this after the destructors of the libraries that use this one.
[[gnu::destructor]] void close_shards() {
    for (TokenShard & shard : shards) {
        shard.free_kept(true);
    }
}

} // namespace

StringToken * intern_token(std::string_view text) {
    unsigned int const hash = hash_of(text);
    return shard_of(hash).intern(text, hash);
}

StringToken * find_token(std::string_view text) {
    unsigned int const hash = hash_of(text);
    return shard_of(hash).find(text, hash);
}

void StringToken::drop_shared_refs(unsigned int n) noexcept {
    // Without the lock unless these may be the last references. Those are dropped under the lock:
    // otherwise another thread could find the token in the table and use it while it is deleted.
    // Each decrement releases and the last one acquires, so all uses of the token come before its
    // deletion.
    unsigned int held = count.load(std::memory_order_relaxed);
    while (held > n) {
        if (count.compare_exchange_weak(held, held - n, std::memory_order_release,
                                        std::memory_order_relaxed)) {
            return;
        }
    }
    shards[shard].release(this, n);
}

unsigned int StringToken::make_hash() noexcept {
    unsigned int const made = text_hash().strong(text);
    hash.store(made, std::memory_order_relaxed); // the same, should two threads make it
    return made;
}

void free_kept_tokens() noexcept {
    for (TokenShard & shard : shards) {
        shard.free_kept(false);
    }
}

} // namespace vxcore::impl
