#pragma once

// Included by readers, here and in vxattribute; not for direct use.

#include "vxcore/key_loan_impl.h"
#include "vxcore/text_fingerprint.h"
#include "vxserialize/export.h"

#include <memory>
#include <string_view>

namespace vxserialize::impl {

/// The names that one reader met recently. A name found here costs neither the hash nor the lock of
/// the intern table.
///
/// Each name has two adjacent slots; a new name replaces the older of the two. A name enters at its
/// second appearance, so names that appear once, such as the keys of a large map, replace nothing.
///
/// The cache starts without slots, makes 32 after 8 misses, and grows by a factor of 4 after 4
/// misses per slot, up to 2,048. A copy starts empty: the slots affect speed only.
///
/// Names are returned from loans, which change the count of a name once for up to 32 of them. The
/// names in the slots stay interned as long as the cache lives, so a reader holds at most 2,048
/// names that its program has dropped.
///
/// Threads. A cache belongs to its reader, and with it to one thread at a time.
///
///     vxcore::StringKey key = m_names.find(text); // equal to StringKey(text)
class VXSERIALIZE_API NameCache {
  public:
    /// Allocates nothing.
    NameCache() noexcept = default;

    NameCache(NameCache const &) noexcept {}

    /// Keeps the names of this cache, which are right for any data.
    NameCache & operator=(NameCache const &) noexcept { return *this; }

    /// Returns the key of `text`, interned if necessary.
    ///
    /// @raises std::bad_alloc: no memory for a new name or for slots.
    ///         std::length_error: `text` is beyond 2^32 - 1 bytes.
    /// @cost   Found: at most two comparisons of 24 bytes, of the text too if it is longer than 16
    ///         bytes. Otherwise that of a StringKey.
    vxcore::StringKey find(std::string_view text) {
        vxcore::TextFingerprint const fingerprint(text);
        if (m_slots) {
            unsigned int const slot = fingerprint.hash() >> m_shift;
            if (m_slots[slot].holds(fingerprint, text)) {
                return m_slots[slot].loan.take();
            }
            if (m_slots[slot ^ 1].holds(fingerprint, text)) {
                return m_slots[slot ^ 1].loan.take();
            }
        }
        return intern(fingerprint, text);
    }

  private:
    /// An unused slot holds the empty text, whose key is the empty one.
    struct Slot {
        /// Compares the text itself only where the fingerprint does not hold all of it.
        bool holds(vxcore::TextFingerprint const & other, std::string_view text) const noexcept {
            return fingerprint == other && (text.size() <= vxcore::TextFingerprint::exact_size ||
                                            loan.key().value() == text);
        }

        vxcore::impl::KeyLoan loan;
        vxcore::TextFingerprint fingerprint;
        unsigned int seen = 0; // hash of a name that appeared once; no part of what the slot holds
    };

    // Sizes are powers of two, given as their bits: 32 slots at first, 2,048 at most.
    static constexpr unsigned int sm_missesBeforeSlots = 8;
    static constexpr unsigned int sm_missesPerSlot = 4;
    static constexpr unsigned int sm_minBits = 5;
    static constexpr unsigned int sm_maxBits = 11;

    // The rare paths, out of line: a miss, and what it changes.
    vxcore::StringKey intern(vxcore::TextFingerprint const & fingerprint, std::string_view text);
    bool was_seen(unsigned int hash) noexcept;
    void grow();
    void add(Slot & slot);

    std::unique_ptr<Slot[]> m_slots;
    unsigned int m_shift = 32; // right shift from a hash to the index of its slot
    unsigned int m_misses = 0; // since the last growth
    unsigned int m_random = 1; // state of a linear congruential generator
};

} // namespace vxserialize::impl
