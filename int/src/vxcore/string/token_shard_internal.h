#pragma once

#include "vxcore/string/spin_lock_internal.h"
#include "vxcore/string/text_hash_internal.h"
#include "vxcore/string_token_impl.h"

#include <cstring>
#include <mutex>
#include <new>
#include <utility>

namespace vxcore::impl {

/// Compares texts of one size, short ones without a call: by their ends, which may overlap.
inline bool equal_texts(char const * a, char const * b, std::size_t size) noexcept {
    auto const equal = [a, b](auto word, std::size_t at) {
        auto other = word;
        std::memcpy(&word, a + at, sizeof(word));
        std::memcpy(&other, b + at, sizeof(word));
        return word == other;
    };
    if (size - 8 <= 8) { // 8 to 16
        return equal(std::uint64_t(), 0) && equal(std::uint64_t(), size - 8);
    }
    if (size - 4 < 4) {
        return equal(std::uint32_t(), 0) && equal(std::uint32_t(), size - 4);
    }
    return std::memcmp(a, b, size) == 0;
}

/// One shard of the hash table: chained buckets under one lock.
///
/// A token whose last key is dropped stays in its bucket with a count of 0, in case its text comes
/// again, as the names of one document do in the next. The last 40 of these are kept, if they have
/// at most 64 bytes each; a ring of pointers remembers their order. `find` does not see them.
///
/// If texts are chosen so that they share a bucket, the shard changes over to the strong hash for
/// good, before the chain of that bucket gets long.
///
/// Constant-initialised and never destroyed, so that keys work in the static initialisers and
/// destructors of any library. A shard without tokens owns no heap memory, so that unloading this
/// library leaks none. Aligned to its size, so that an index is a shift, and no two locks share a
/// cache line.
class alignas(512) TokenShard {
  public:
    /// There are 64 shards. The upper bits of a hash select one, the lower bits the bucket in it.
    static constexpr unsigned int index_bits = 6;

    static unsigned char index(unsigned int hash) noexcept {
        return static_cast<unsigned char>(hash >> (32 - index_bits));
    }

    constexpr TokenShard() noexcept = default;

    /// Returns the token of the text with one more reference; makes it if there is none.
    ///
    /// @param hash  The quick hash of the text. Its upper bits are the index of this shard.
    /// @raises std::bad_alloc: no memory; the shard is unchanged.
    StringToken * intern(std::string_view text, unsigned int hash) {
        std::lock_guard const lock(m_lock);
        StringToken * const token = lookup(text, hash);
        if (token == nullptr) {
            return make(text, hash);
        }
        if (token->count.load(std::memory_order_relaxed) != 0) {
            token->add_refs(1);
        } else { // nobody else can add a reference meanwhile
            token->count.store(1, std::memory_order_relaxed);
            m_kept[token->slot] = nullptr;
        }
        return token;
    }

    /// Returns the token of the text with one more reference, or null if no key of it is alive.
    StringToken * find(std::string_view text, unsigned int hash) noexcept {
        std::lock_guard const lock(m_lock);
        StringToken * const token = lookup(text, hash);
        if (token == nullptr || token->count.load(std::memory_order_relaxed) == 0) {
            return nullptr;
        }
        token->add_refs(1);
        return token;
    }

    /// Drops `n` references. With the last one the token is kept for reuse, in place of the oldest
    /// that was kept, or freed.
    void release(StringToken * token, unsigned int n) noexcept {
        {
            std::lock_guard const lock(m_lock);
            // All references of a token that has no others: nobody else can add one meanwhile.
            if (token->count.load(std::memory_order_acquire) == n) {
                token->count.store(0, std::memory_order_relaxed);
            } else if (token->count.fetch_sub(n, std::memory_order_acq_rel) != n) {
                return;
            }
            if (!m_isClosed && token->text.size() <= max_kept_size) {
                token->slot = static_cast<unsigned short>(m_nextKept++ % max_kept);
                token = std::exchange(m_kept[token->slot], token);
            }
            if (token == nullptr) {
                return;
            }
            unlink(*token);
        }
        // After the lock is released: freeing takes longer than the whole critical section.
        delete token;
    }

    /// Frees the tokens that are kept for reuse. If `isLast`, none will be kept from now on.
    ///
    /// Does nothing if another thread holds the lock. It may hold it forever: a child of `fork` has
    /// the locks of all threads of its parent, but not the threads.
    void free_kept(bool isLast) noexcept {
        std::unique_lock const lock(m_lock, std::try_to_lock);
        if (!lock) {
            return;
        }
        m_isClosed |= isLast;
        for (StringToken *& kept : m_kept) {
            if (StringToken * const token = std::exchange(kept, nullptr)) {
                unlink(*token);
                delete token;
            }
        }
    }

  private:
    unsigned int position_of(std::string_view text, unsigned int hash) const noexcept {
        return m_usesStrongHash ? text_hash().strong(text) : hash;
    }

    StringToken *& bucket(unsigned int position) noexcept { return m_buckets[position & m_mask]; }

    StringToken * lookup(std::string_view text, unsigned int hash) noexcept {
        unsigned int const position = position_of(text, hash);
        StringToken * token = bucket(position);
        while (token != nullptr &&
               (token->position != position || token->text.size() != text.size() ||
                !equal_texts(token->text.data(), text.data(), text.size()))) {
            token = token->next;
        }
        return token;
    }

    [[gnu::noinline]] StringToken * make(std::string_view text, unsigned int hash) {
        // Both steps that may raise come before the token is linked into its bucket.
        grow_if_full();
        auto * const token = new StringToken(text, position_of(text, hash), index(hash));
        link(*token);
        ++m_size;
        if (!m_usesStrongHash && has_long_chain(*token)) {
            use_strong_hash();
        }
        return token;
    }

    static bool has_long_chain(StringToken const & first) noexcept {
        unsigned int length = 0;
        StringToken const * token = &first;
        for (; token != nullptr && length <= max_chain; token = token->next) {
            ++length;
        }
        return length > max_chain;
    }

    void link(StringToken & token) noexcept {
        StringToken *& head = bucket(token.position);
        token.next = head;
        head = &token;
    }

    void unlink(StringToken & token) noexcept {
        StringToken ** link = &bucket(token.position);
        while (*link != &token) {
            link = &(*link)->next;
        }
        *link = token.next;
        if (--m_size <= m_mask / 8 && m_buckets != m_inlineBuckets) {
            shrink();
        }
    }

    /// Takes all tokens out of their buckets, as one list.
    StringToken * unlink_all() noexcept {
        StringToken * all = nullptr;
        for (unsigned int i = 0; i <= m_mask; ++i) {
            while (StringToken * const token = m_buckets[i]) {
                m_buckets[i] = token->next;
                token->next = all;
                all = token;
            }
        }
        return all;
    }

    void link_all(StringToken * all) noexcept {
        while (StringToken * const token = all) {
            all = token->next;
            link(*token);
        }
    }

    void grow_if_full() {
        // At most one token a bucket on average.
        if (m_size <= m_mask) {
            return;
        }
        unsigned int const count = (m_mask + 1) * 2;
        use_buckets(new StringToken *[count](), count);
    }

    /// Without memory for smaller buckets the present ones stay.
    void shrink() noexcept {
        unsigned int const count = (m_mask + 1) / 4;
        if (count <= inlineCount || m_size == 0) {
            use_buckets(m_inlineBuckets, inlineCount);
            return;
        }
        try {
            use_buckets(new StringToken *[count](), count);
        } catch (std::bad_alloc const &) {
        }
    }

    [[gnu::cold]] void use_strong_hash() noexcept {
        m_usesStrongHash = true;
        StringToken * const all = unlink_all();
        for (StringToken * token = all; token != nullptr; token = token->next) {
            token->position = text_hash().strong(token->text);
        }
        link_all(all);
    }

    /// Moves all tokens to `buckets`, which are empty.
    void use_buckets(StringToken ** buckets, unsigned int count) noexcept {
        StringToken * const all = unlink_all();
        if (m_buckets != m_inlineBuckets) {
            delete[] m_buckets;
        }
        m_buckets = buckets;
        m_mask = count - 1;
        link_all(all);
    }

    static constexpr unsigned int inlineCount = 16;
    static constexpr unsigned int max_chain = 24; // by chance once in 10^24 buckets
    static constexpr unsigned int max_kept = 40;
    static constexpr std::size_t max_kept_size = 64; // bytes of text

    SpinLock m_lock;
    bool m_usesStrongHash = false;
    bool m_isClosed = false;
    StringToken ** m_buckets = m_inlineBuckets;
    unsigned int m_mask = inlineCount - 1;
    unsigned int m_size = 0;
    unsigned int m_nextKept = 0; // counts the tokens that were kept; modulo max_kept a slot
    StringToken * m_inlineBuckets[inlineCount] = {};
    StringToken * m_kept[max_kept] = {}; // tokens with a count of 0; null where one was reused
};

} // namespace vxcore::impl
