#include "vxcore/string/siphash_internal.h"
#include "vxcore/string/string_token_internal.h"

#include <array>
#include <chrono>
#include <mutex>
#include <random>
#include <thread>

namespace vxcore::impl {

namespace {

SipHashKey make_secret() {
    std::random_device random;
    auto const word = [&random] { return std::uint64_t{random()} << 32 | random(); };
    return {word(), word()};
}

// The secret is made at the first call, since keys may be made before the initialisers of this
// file.
unsigned int hash_text(std::string_view text) {
    static SipHashKey const secret = make_secret();
    return static_cast<unsigned int>(SipHash<1, 3>::hash(secret, text.data(), text.size()));
}

/// A spin lock for critical sections of a few instructions. Locking is one atomic exchange, a plain
/// one while the process has one thread; unlocking is a plain store.
///
/// A waiting thread sleeps after 1,000 tries; otherwise a thread of higher priority could keep the
/// owner off the processor for ever. It polls, because waking it would cost every owner a second
/// exchange. A mutex would double the cost of the critical section.
class SpinLock {
  public:
    void lock() noexcept {
        if (is_single_threaded() && !m_isTaken.load(std::memory_order_relaxed)) {
            m_isTaken.store(true, std::memory_order_relaxed);
            return;
        }
        while (m_isTaken.exchange(true, std::memory_order_acquire)) {
            wait();
        }
    }

    void unlock() noexcept { m_isTaken.store(false, std::memory_order_release); }

  private:
    [[gnu::cold]] void wait() const noexcept {
        int tries = 0;
        while (m_isTaken.load(std::memory_order_relaxed)) {
            if (tries < 1000) {
                ++tries;
            } else { // the owner is not running
                std::this_thread::sleep_for(std::chrono::microseconds(50));
            }
        }
    }

    std::atomic<bool> m_isTaken = false;
};

/// One shard of the hash table: chained buckets under one lock.
///
/// Constant-initialised and never destroyed, so that keys work in the static initialisers and
/// destructors of any library. An empty shard therefore owns no heap memory, so that unloading this
/// library leaks none. Aligned to cache lines, so that two locks never share a line.
class alignas(64) Shard {
  public:
    constexpr Shard() noexcept = default;

    /// Returns the token of `text` with one more reference; makes it if there is none.
    StringToken * intern(std::string_view text, unsigned int hash) {
        std::lock_guard const lock(m_lock);
        if (StringToken * const known = lookup(text, hash)) {
            known->add_refs(1);
            return known;
        }
        // Both steps that may raise come before the token is linked into its bucket.
        grow_if_full();
        auto * const token = new StringToken(text, hash);
        StringToken *& head = bucket(hash);
        token->next = head;
        head = token;
        ++m_size;
        return token;
    }

    /// Returns the token of `text` with one more reference, or null if there is none.
    StringToken * find(std::string_view text, unsigned int hash) noexcept {
        std::lock_guard const lock(m_lock);
        StringToken * const known = lookup(text, hash);
        if (known != nullptr) {
            known->add_refs(1);
        }
        return known;
    }

    /// Drops `n` references, and with the last one the token.
    void release(StringToken * token, unsigned int n) noexcept {
        {
            std::lock_guard const lock(m_lock);
            if (token->count.fetch_sub(n, std::memory_order_acq_rel) != n) {
                return;
            }
            StringToken ** link = &bucket(token->hash);
            while (*link != token) {
                link = &(*link)->next;
            }
            *link = token->next;
            if (--m_size == 0) {
                use_buckets(m_inlineBuckets, inlineCount);
            }
        }
        // After the lock is released: freeing takes longer than the whole critical section.
        delete token;
    }

  private:
    StringToken *& bucket(unsigned int hash) noexcept { return m_buckets[hash & m_mask]; }

    StringToken * lookup(std::string_view text, unsigned int hash) noexcept {
        // The hash is compared first: characters are then mostly compared for one token only.
        StringToken * token = bucket(hash);
        while (token != nullptr && (token->hash != hash || token->text != text)) {
            token = token->next;
        }
        return token;
    }

    void grow_if_full() {
        // At most one token a bucket on average.
        if (m_size <= m_mask) {
            return;
        }
        unsigned int const count = (m_mask + 1) * 2;
        auto * const buckets = new StringToken *[count]();
        for (unsigned int i = 0; i <= m_mask; ++i) {
            while (StringToken * const token = m_buckets[i]) {
                m_buckets[i] = token->next;
                StringToken *& head = buckets[token->hash & (count - 1)];
                token->next = head;
                head = token;
            }
        }
        use_buckets(buckets, count);
    }

    void use_buckets(StringToken ** buckets, unsigned int count) noexcept {
        if (m_buckets != m_inlineBuckets) {
            delete[] m_buckets;
        }
        m_buckets = buckets;
        m_mask = count - 1;
    }

    static constexpr unsigned int inlineCount = 16;

    SpinLock m_lock;
    StringToken ** m_buckets = m_inlineBuckets;
    unsigned int m_mask = inlineCount - 1;
    unsigned int m_size = 0;
    StringToken * m_inlineBuckets[inlineCount] = {};
};

/// 64 shards, so that threads rarely wait for the lock of one.
constexpr unsigned int shardBits = 6;
constinit std::array<Shard, 1u << shardBits> shards;

/// The upper bits select the shard, the lower bits the bucket in it.
Shard & shard_of(unsigned int hash) noexcept {
    return shards[hash >> (32 - shardBits)];
}

} // namespace

StringToken * intern_token(std::string_view text) {
    unsigned int const hash = hash_text(text);
    return shard_of(hash).intern(text, hash);
}

StringToken * find_token(std::string_view text) {
    unsigned int const hash = hash_text(text);
    return shard_of(hash).find(text, hash);
}

void release_token(StringToken * token, unsigned int n) noexcept {
    shard_of(token->hash).release(token, n);
}

} // namespace vxcore::impl
