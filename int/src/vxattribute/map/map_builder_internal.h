#pragma once

#include "vxattribute/attribute_map.h"

#include <vector>

namespace vxattribute::impl {

/// Gathers the elements of maps that are being read, those of the innermost last. A map is made
/// once its elements are known, so that its nodes lie in one run of just that size.
class MapBuilder {
  public:
    /// The elements of all maps so far: what the next map starts at.
    std::size_t size() const noexcept { return m_elements.size(); }

    /// Adds an element whose value is null until `last_value` is set.
    void add(AttributeName const & name) { m_elements.emplace_back(name, AttributeValue()); }

    AttributeValue & last_value() noexcept { return m_elements.back().second; }

    /// Makes a map of the elements from `start` on and forgets them. Of equal names the last stays.
    AttributeMap take(std::size_t start);

  private:
    std::vector<std::pair<AttributeName, AttributeValue>> m_elements;
};

} // namespace vxattribute::impl
