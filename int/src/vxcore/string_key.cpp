#include "vxcore/string_key.h"

#include "vxcore/siphash_internal.h"
#include "vxcore/text_conversion.h"
#include "vxcore/text_size.h"

#include <array>
#include <atomic>
#include <chrono>
#include <mutex>
#include <new>
#include <ostream>
#include <random>
#include <thread>

namespace vxcore {

namespace impl {

/// One interned string. `count` goes from 0 to 1 and from 1 to 0 only under the lock of the token's
/// shard, so a token that the shard still lists is always alive.
struct StringToken {
    StringToken(std::string_view string, unsigned int stringHash)
        : count(1), hash(stringHash), next(nullptr), text(string) {}

    std::atomic<unsigned int> count;
    unsigned int const hash;
    StringToken * next;
    std::string const text;
};

} // namespace impl

namespace {

using impl::StringToken;

impl::SipHashKey make_secret() {
    std::random_device random;
    auto const word = [&random] { return std::uint64_t{random()} << 32 | random(); };
    return {word(), word()};
}

unsigned int hash_text(std::string_view text) {
    static impl::SipHashKey const secret = make_secret();
    return static_cast<unsigned int>(impl::SipHash<1, 3>::hash(secret, text.data(), text.size()));
}

/// A lock for a few instructions: taking it is one atomic exchange, giving it back a plain store.
///
/// A thread that waits for long sleeps, or it could keep the holder off the processor for ever by a
/// higher priority. It looks again by itself: to be woken would cost every holder a second
/// exchange, and a mutex costs as much again as everything that happens under it.
class SleepLock {
  public:
    void lock() noexcept {
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
            } else { // its holder has lost the processor
                std::this_thread::sleep_for(std::chrono::microseconds(50));
            }
        }
    }

    std::atomic<bool> m_isTaken = false;
};

/// One of the independent parts of the table: chained buckets behind a lock of their own.
///
/// Constant-initialised and never destroyed, so that keys work in load-time code of any library and
/// may still be dropped at unload. An empty shard therefore holds no memory: an unloaded library
/// leaves none behind.
class alignas(64) Shard {
  public:
    constexpr Shard() noexcept = default;

    /// The token of `text` with one more reference, made when there is none.
    StringToken * acquire(std::string_view text, unsigned int hash) {
        std::lock_guard const lock(m_lock);
        if (StringToken * const known = find(text, hash)) {
            known->count.fetch_add(1, std::memory_order_relaxed);
            return known;
        }
        grow_when_full();
        auto * const token = new StringToken(text, hash);
        StringToken *& head = bucket(hash);
        token->next = head;
        head = token;
        ++m_size;
        return token;
    }

    /// The token of `text` with one more reference; null when there is none.
    StringToken * acquire_known(std::string_view text, unsigned int hash) noexcept {
        std::lock_guard const lock(m_lock);
        StringToken * const known = find(text, hash);
        if (known != nullptr) {
            known->count.fetch_add(1, std::memory_order_relaxed);
        }
        return known;
    }

    /// Drops what may be the last reference.
    void release(StringToken * token) noexcept {
        {
            std::lock_guard const lock(m_lock);
            if (token->count.fetch_sub(1, std::memory_order_acq_rel) != 1) {
                return;
            }
            StringToken ** link = &bucket(token->hash);
            while (*link != token) {
                link = &(*link)->next;
            }
            *link = token->next;
            if (--m_size == 0) {
                use_buckets(m_ownBuckets, ownCount);
            }
        }
        delete token;
    }

  private:
    StringToken *& bucket(unsigned int hash) noexcept { return m_buckets[hash & m_mask]; }

    StringToken * find(std::string_view text, unsigned int hash) noexcept {
        StringToken * token = bucket(hash);
        while (token != nullptr && (token->hash != hash || token->text != text)) {
            token = token->next;
        }
        return token;
    }

    void grow_when_full() {
        if (m_size <= m_mask) {
            return;
        }
        unsigned int const count = (m_mask + 1) * 2;
        auto * const fresh = new StringToken *[count]();
        for (unsigned int i = 0; i <= m_mask; ++i) {
            while (StringToken * const token = m_buckets[i]) {
                m_buckets[i] = token->next;
                StringToken *& head = fresh[token->hash & (count - 1)];
                token->next = head;
                head = token;
            }
        }
        use_buckets(fresh, count);
    }

    void use_buckets(StringToken ** buckets, unsigned int count) noexcept {
        if (m_buckets != m_ownBuckets) {
            delete[] m_buckets;
        }
        m_buckets = buckets;
        m_mask = count - 1;
    }

    static constexpr unsigned int ownCount = 16;

    SleepLock m_lock;
    StringToken ** m_buckets = m_ownBuckets;
    unsigned int m_mask = ownCount - 1;
    unsigned int m_size = 0;
    StringToken * m_ownBuckets[ownCount] = {};
};

constexpr unsigned int shardBits = 6;
constinit std::array<Shard, 1u << shardBits> shards;

/// The upper bits choose the shard, the lower ones the bucket in it.
Shard & shard_of(unsigned int hash) noexcept {
    return shards[hash >> (32 - shardBits)];
}

} // namespace

StringKey::StringKey(std::string_view text) {
    if (!text.empty()) {
        text_size(text.size());
        unsigned int const hash = hash_text(text);
        m_token = shard_of(hash).acquire(text, hash);
    }
}

StringKey::StringKey(StringKey const & other) noexcept : m_token(other.m_token) {
    if (m_token != nullptr) {
        m_token->count.fetch_add(1, std::memory_order_relaxed);
    }
}

StringKey::~StringKey() {
    if (m_token == nullptr) {
        return;
    }
    unsigned int count = m_token->count.load(std::memory_order_relaxed);
    while (count > 1) {
        if (m_token->count.compare_exchange_weak(count, count - 1, std::memory_order_release,
                                                 std::memory_order_relaxed)) {
            return;
        }
    }
    shard_of(m_token->hash).release(m_token);
}

bool StringKey::find_interned(std::string_view text, StringKey & key) noexcept {
    StringKey found;
    if (!text.empty()) {
        unsigned int const hash = hash_text(text);
        found.m_token = shard_of(hash).acquire_known(text, hash);
        if (found.m_token == nullptr) {
            return false;
        }
    }
    key.swap(found);
    return true;
}

std::string const & StringKey::value() const noexcept {
    return m_token != nullptr ? m_token->text : g_emptyString;
}

unsigned int StringKey::hash() const noexcept {
    return m_token != nullptr ? m_token->hash : 0;
}

void StringKey::write_trace(std::ostream & stream) const {
    stream << value();
}

} // namespace vxcore
