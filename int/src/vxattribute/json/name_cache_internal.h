#pragma once

#include "vxattribute/attribute_name.h"
#include "vxcore/text_ends.h"

#include <array>
#include <string>
#include <string_view>

namespace vxattribute::impl {

/// Names that one call of reading met: a name that comes again costs neither the hash nor the lock
/// of the intern table. A name has two slots side by side; the one that came first makes way.
class JsonNameCache {
  public:
    /// The reference holds until the next call.
    AttributeName const & find(std::string const & text) {
        AttributeName & first = m_slots[slot_of(text)];
        if (first.value() == text) {
            return first;
        }
        AttributeName & second = m_slots[slot_of(text) ^ 1];
        if (second.value() != text) {
            AttributeName fresh(text);
            second.swap(first);
            first.swap(fresh);
            return first;
        }
        return second;
    }

  private:
    static constexpr unsigned int sm_bits = 7;

    static unsigned int slot_of(std::string_view text) noexcept {
        return vxcore::TextEnds(text).hash() >> (32 - sm_bits);
    }

    std::array<AttributeName, 1u << sm_bits> m_slots;
};

} // namespace vxattribute::impl
