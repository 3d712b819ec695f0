#pragma once

// Included by caches of names, here and in the other libraries; not for direct use.

#include "vxcore/string_key.h"

namespace vxcore::impl {

/// A key that a cache returns again and again, with references taken in advance.
///
/// Each returned key needs a reference. Counts are shared by threads, so adding 32 references at
/// once costs as much as adding one. A loan takes 1, then 4, 16 and 32 at a time, because a name
/// that was returned often will be again. References that are left are dropped with the key.
///
/// Threads. A loan belongs to one thread at a time. The keys that it returned are independent.
///
///     KeyLoan loan(StringKey("port"));
///     map.add(AttributeName(loan.take()), 8080);
class KeyLoan {
  public:
    /// The loan of the empty key, which needs no references.
    KeyLoan() noexcept = default;

    explicit KeyLoan(StringKey key) noexcept : m_key(std::move(key)) {}

    KeyLoan(KeyLoan && other) noexcept { swap(other); }

    KeyLoan & operator=(KeyLoan other) noexcept {
        swap(other);
        return *this;
    }

    ~KeyLoan() {
        if (m_key.m_token != nullptr) { // the key's own reference goes with those that are left
            std::exchange(m_key.m_token, nullptr)->drop_refs(m_left + 1);
        }
    }

    StringKey const & key() const noexcept VXCORE_LIFETIMEBOUND { return m_key; }

    /// Returns the key with one of the references taken in advance.
    StringKey take() noexcept {
        if (m_left == 0) {
            if (m_key.m_token == nullptr) {
                return StringKey();
            }
            m_left = m_next;
            m_next = m_next < 16 ? m_next * 4 : 32;
            m_key.m_token->add_refs(m_left);
        }
        --m_left;
        return StringKey(m_key.m_token);
    }

    void swap(KeyLoan & other) noexcept {
        m_key.swap(other.m_key);
        std::swap(m_left, other.m_left);
        std::swap(m_next, other.m_next);
    }

  private:
    StringKey m_key;
    unsigned short m_left = 0; // references that no key has yet
    unsigned short m_next = 1; // how many to take when none is left
};

} // namespace vxcore::impl
