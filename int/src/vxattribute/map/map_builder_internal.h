#pragma once

#include "vxattribute/attribute_map.h"

#include <cstdint>
#include <vector>

namespace vxattribute::impl {

/// Collects the elements of nested maps that are being read, those of the innermost map last. A map
/// is made when all its elements are known: they are sorted, and its tree is linked in one pass.
class MapBuilder {
  public:
    /// The number of elements so far: where the elements of the next map start.
    std::size_t size() const noexcept { return m_elements.size(); }

    /// Makes room for `count` more elements.
    void reserve(std::size_t count) { m_elements.reserve(size() + count); }

    /// Adds an element whose value is null until `last_value` is set.
    void add(AttributeName name) { m_elements.emplace_back(std::move(name), AttributeValue()); }

    void add(AttributeName name, AttributeValue value) {
        m_elements.emplace_back(std::move(name), std::move(value));
    }

    /// The value of the element that was added last.
    AttributeValue & last_value() noexcept { return m_elements.back().second; }

    /// Makes a map of the elements from `start` on and removes them. Of equal names the last is
    /// kept.
    ///
    /// @raises std::bad_alloc: the elements are still there.
    AttributeMap take(std::size_t start);

  private:
    /// The place of an element in map order.
    struct Rank {
        std::uintptr_t key; // the address of the name
        std::size_t index;  // of the element, from the start of its map
    };

    void sort(std::size_t start);

    std::vector<std::pair<AttributeName, AttributeValue>> m_elements;
    std::vector<Rank> m_order; // of the map that was made last
};

} // namespace vxattribute::impl
