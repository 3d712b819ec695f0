#include "vxattribute/map/map_builder_internal.h"

#include <algorithm>

namespace vxattribute::impl {

bool MapOrder::is_sorted(std::span<Rank const> ranks) noexcept {
    return std::adjacent_find(ranks.begin(), ranks.end(), [](Rank const & a, Rank const & b) {
               return a.key >= b.key;
           }) == ranks.end();
}

// The order of the last map of this size is tried first: maps of one list mostly have the same
// names in the same order, and their addresses have none.
template <typename NameAt>
void MapOrder::sort(std::size_t count, NameAt nameAt) {
    if (m_ranks.size() != count) {
        m_ranks.resize(count);
        for (std::size_t i = 0; i != count; ++i) {
            m_ranks[i].index = i;
        }
    }
    for (Rank & rank : m_ranks) {
        rank.key = reinterpret_cast<std::uintptr_t>(nameAt(rank.index).key().key_value());
    }
    if (!is_sorted(m_ranks)) {
        std::sort(m_ranks.begin(), m_ranks.end(), [](Rank const & a, Rank const & b) {
            return a.key != b.key ? a.key < b.key : a.index < b.index;
        });
    }
}

template <typename Use>
void MapOrder::for_each(Use use) const {
    for (std::size_t i = 0; i != m_ranks.size(); ++i) {
        if (i + 1 == m_ranks.size() || m_ranks[i].key != m_ranks[i + 1].key) {
            use(m_ranks[i].index);
        }
    }
}

AttributeMap MapBuilder::take(std::size_t start) {
    std::size_t const count = m_elements.size() - start;
    auto * const first = m_elements.data() + start;
    MapOrder & order = m_orders[count % m_orders.size()];
    order.sort(count, [first](std::size_t i) -> AttributeName const & { return first[i].first; });
    auto holder = AttributeMapBase::MapHolder::make(count);
    order.for_each([&map = holder->m_map, first](std::size_t i) {
        map.append_unlinked(std::move(first[i].first), std::move(first[i].second));
    });
    holder->m_map.link_appended();
    m_elements.resize(start);
    return AttributeMap(holder);
}

AttributeMap MapBuilder::make(std::span<Attribute const> attributes) {
    if (attributes.empty()) {
        return AttributeMap();
    }
    MapOrder order;
    order.sort(attributes.size(), [attributes](std::size_t i) -> AttributeName const & {
        return attributes[i].name();
    });
    auto holder = AttributeMapBase::MapHolder::make(attributes.size());
    order.for_each([&map = holder->m_map, attributes](std::size_t i) {
        map.append_unlinked(attributes[i].name(), attributes[i].value());
    });
    holder->m_map.link_appended();
    return AttributeMap(holder);
}

} // namespace vxattribute::impl
