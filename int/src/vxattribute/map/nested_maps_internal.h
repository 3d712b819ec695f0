#pragma once

#include "vxattribute/attribute_map.h"

#include <span>

/// Parts of walks through nested maps. A walk keeps its open maps in a list and does not recurse:
/// input decides how deep maps nest, and each level of recursion would take stack.
namespace vxattribute::impl {

inline bool holds_maps(AttributeValue const & value) noexcept {
    return value.type() == ValueTypeId::typeAttributeMap;
}

/// The maps of `value`.
///
/// @pre  `holds_maps(value)`.
inline std::span<AttributeMap const> maps_of(AttributeValue const & value) {
    return {value.begin<AttributeMap>(), value.end<AttributeMap>()};
}

/// The map that `value` holds; a null pointer when it does not hold exactly one map.
inline AttributeMap const * scalar_map(AttributeValue const & value) {
    return holds_maps(value) && value.size() == 1 ? value.begin<AttributeMap>() : nullptr;
}

/// A walk over the elements of several maps, map by map. Plain data; the maps must outlive it.
class MapsCursor {
  public:
    using Element = AttributeMapBase::value_type;

    /// Starts before the first map; no map is open.
    explicit MapsCursor(std::span<AttributeMap const> maps) noexcept : m_maps(maps) {}

    /// The next element of the open map; null at its end, or while no map is open.
    Element const * next_element() noexcept { return m_next != m_end ? &*m_next++ : nullptr; }

    /// Opens the next map, even if the open one is not at its end. False when there is none.
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
