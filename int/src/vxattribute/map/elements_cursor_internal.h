#pragma once

#include "vxattribute/sorted_by_name.h"

#include <cstddef>

namespace vxattribute::impl {

/// Goes through the elements of one map, in map order or sorted by the bytes of their names.
///
/// Only sorting takes memory: an iterator per element. The map must outlive the cursor.
class ElementsCursor {
  public:
    using Element = AttributeMapBase::value_type;

    /// At the end of no map.
    ElementsCursor() = default;

    ElementsCursor(AttributeMapBase const & map, bool sorted)
        : m_next(map.begin()), m_end(map.end()) {
        if (sorted) {
            m_order = sorted_by_name(map);
        }
    }

    /// The next element; null after the last one.
    Element const * next() noexcept {
        if (m_order.empty()) {
            return m_next != m_end ? &*m_next++ : nullptr;
        }
        return m_at != m_order.size() ? &*m_order[m_at++] : nullptr;
    }

  private:
    AttributeMapBase::const_iterator m_next = {};
    AttributeMapBase::const_iterator m_end = {};
    std::vector<AttributeMapBase::const_iterator> m_order; // empty for map order
    std::size_t m_at = 0;
};

} // namespace vxattribute::impl
