#pragma once

// Included by the readers; not for direct use.

#include "vxcore/string_key.h"
#include "vxcore/text_ends.h"

#include <memory>
#include <string_view>

namespace vxserialize::impl {

/// Names that were read lately: a name that comes again costs neither the hash nor the lock of the
/// intern table.
///
/// A name has two slots, side by side; the older of the two makes way for a new one. A name is
/// taken in when it comes for the second time: those that come once, such as the keys of a large
/// map, cost little here and push out no other. There are no slots at all at first, then few, and
/// four times as many after every so many misses, to a limit. A copy starts anew: slots are a
/// matter of speed alone.
class NameCache {
  public:
    NameCache() noexcept = default;

    NameCache(NameCache const &) noexcept {}

    NameCache & operator=(NameCache const &) noexcept { return *this; }

    /// The key of `text`.
    vxcore::StringKey find(std::string_view text) {
        vxcore::TextEnds const print(text);
        if (m_slots) {
            unsigned int const slot = print.hash() >> m_shift;
            if (m_slots[slot].holds(print, text)) {
                return m_slots[slot].key;
            }
            if (m_slots[slot ^ 1].holds(print, text)) {
                return m_slots[slot ^ 1].key;
            }
        }
        return intern(print, text);
    }

  private:
    /// An unused slot holds the empty text, whose key is the empty one.
    struct Slot {
        bool holds(vxcore::TextEnds const & other, std::string_view text) const noexcept {
            return print == other && (text.size() <= 16 || key.value() == text);
        }

        vxcore::StringKey key;
        vxcore::TextEnds print;
        unsigned int seen = 0; // the hash of a name that came by and was not known
    };

    static constexpr unsigned int sm_missesBeforeSlots = 8;
    static constexpr unsigned int sm_missesPerSlot = 4;
    static constexpr unsigned int sm_minBits = 5;
    static constexpr unsigned int sm_maxBits = 11;

    vxcore::StringKey intern(vxcore::TextEnds const & print, std::string_view text);
    bool was_seen(unsigned int hash) noexcept;
    void grow();
    void add(Slot & slot);

    std::unique_ptr<Slot[]> m_slots;
    unsigned int m_shift = 32; // of a hash to the number of a slot
    unsigned int m_misses = 0; // since the slots last grew
    unsigned int m_dice = 1;
};

} // namespace vxserialize::impl
