#pragma once

#include "vxattribute/attribute_map.h"

#include <span>

/// What walks through nested maps. A walk keeps what it has open in a list of its own and not on
/// the stack: the depth of maps is the caller's to choose, that of the stack is not.
namespace vxattribute::impl {

inline bool holds_maps(AttributeValue const & value) noexcept {
    return value.type() == ValueTypeId::typeAttributeMap;
}

/// The maps of a value that `holds_maps`.
inline std::span<AttributeMap const> maps_of(AttributeValue const & value) {
    return {value.begin<AttributeMap>(), value.end<AttributeMap>()};
}

/// The map that `value` holds; null when it is not one map.
inline AttributeMap const * scalar_map(AttributeValue const & value) {
    return holds_maps(value) && value.size() == 1 ? value.begin<AttributeMap>() : nullptr;
}

/// Goes through the elements of several maps, map by map. Plain data; the maps must outlive it.
class MapsCursor {
  public:
    using Element = AttributeMapBase::value_type;

    /// Starts before the first map: none is open.
    explicit MapsCursor(std::span<AttributeMap const> maps) noexcept : m_maps(maps) {}

    /// The next element of the open map; null at its end, or while no map is open.
    Element const * next_element() noexcept { return m_next != m_end ? &*m_next++ : nullptr; }

    /// Opens the next map, whether the open one is at its end or not; false when there is none.
    bool next_map() noexcept {
        if (m_maps.empty()) {
            return false;
        }
        m_next = m_maps.front().begin();
        m_end = m_maps.front().end();
        m_maps = m_maps.subspan(1);
        return true;
    }

  private:
    std::span<AttributeMap const> m_maps; // after the open one
    AttributeMapBase::const_iterator m_next{};
    AttributeMapBase::const_iterator m_end{};
};

} // namespace vxattribute::impl
