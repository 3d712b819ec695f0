#pragma once

// Included by the readers; not for direct use.

#include "vxcore/string_key.h"

#include <memory>
#include <string_view>

namespace vxserialize::impl {

/// Names that were read lately: a name that comes again costs neither the hash nor the lock of the
/// intern table. Direct-mapped, so a lookup is one comparison and a miss replaces the slot.
///
/// Most streams are short and have few names, so there are few slots at first; as many misses as
/// slots make four times as many, to a limit. A copy starts anew: slots are a matter of speed
/// alone.
class NameCache {
  public:
    NameCache() noexcept = default;

    NameCache(NameCache const &) noexcept {}

    NameCache & operator=(NameCache const &) noexcept { return *this; }

    /// The key of `text`.
    vxcore::StringKey find(std::string_view text) {
        unsigned int const hash = hash_of(text);
        if (m_slots) {
            Slot const & slot = m_slots[hash >> m_shift];
            if (slot.text == text) {
                return slot.key;
            }
        }
        return intern(text, hash);
    }

  private:
    struct Slot {
        vxcore::StringKey key;
        std::string_view text; // of the key
    };

    static constexpr unsigned int sm_minBits = 4;
    static constexpr unsigned int sm_maxBits = 10;

    static unsigned int hash_of(std::string_view text) noexcept;
    vxcore::StringKey intern(std::string_view text, unsigned int hash);
    void grow();

    std::unique_ptr<Slot[]> m_slots;
    unsigned int m_shift = 32; // of a hash to the number of a slot
    unsigned int m_misses = 0;
};

} // namespace vxserialize::impl
