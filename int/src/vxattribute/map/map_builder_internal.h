#pragma once

#include "vxattribute/attribute_map.h"

#include <vector>

namespace vxattribute::impl {

/// Collects the elements of nested maps that are being read, those of the innermost map last. A map
/// is made when all its elements are known, so its nodes are in one run of exactly that size.
class MapBuilder {
  public:
    /// The number of elements so far: where the elements of the next map start.
    std::size_t size() const noexcept { return m_elements.size(); }

    /// Adds an element whose value is null until `last_value` is set.
    void add(AttributeName name) { m_elements.emplace_back(std::move(name), AttributeValue()); }

    /// The value of the element that was added last.
    AttributeValue & last_value() noexcept { return m_elements.back().second; }

    /// Makes a map of the elements from `start` on and removes them. Of equal names the last is
    /// kept.
    AttributeMap take(std::size_t start);

  private:
    std::vector<std::pair<AttributeName, AttributeValue>> m_elements;
};

} // namespace vxattribute::impl
