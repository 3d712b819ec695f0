#include "vxattribute/map/map_builder_internal.h"

#include <algorithm>
#include <tuple>

namespace vxattribute {

/// Puts the elements from `start` on into map order, the earlier of equal names first.
void impl::MapBuilder::sort(std::size_t start) {
    std::size_t const count = m_elements.size() - start;
    // The order of the last map is tried first: lists of maps mostly have the same names in the
    // same order, whose addresses have no order.
    if (m_order.size() != count) {
        m_order.resize(count);
        for (std::size_t i = 0; i != count; ++i) {
            m_order[i].index = i;
        }
    }
    bool isSorted = true;
    std::uintptr_t last = 0;
    for (Rank & rank : m_order) {
        void const * const name = m_elements[start + rank.index].first.key().key_value();
        rank.key = reinterpret_cast<std::uintptr_t>(name);
        isSorted = isSorted && (rank.key > last || &rank == m_order.data());
        last = rank.key;
    }
    if (!isSorted) {
        std::sort(m_order.begin(), m_order.end(), [](Rank const & a, Rank const & b) {
            return std::tie(a.key, a.index) < std::tie(b.key, b.index);
        });
    }
}

AttributeMap impl::MapBuilder::take(std::size_t start) {
    sort(start);
    auto holder = AttributeMapBase::MapHolder::make(m_order.size());
    for (std::size_t i = 0; i != m_order.size(); ++i) {
        if (i + 1 != m_order.size() && m_order[i].key == m_order[i + 1].key) {
            continue;
        }
        auto & [name, value] = m_elements[start + m_order[i].index];
        holder->m_map.append_unlinked(std::move(name), std::move(value));
    }
    holder->m_map.link_appended();
    m_elements.resize(start);
    return AttributeMap(holder);
}

} // namespace vxattribute
