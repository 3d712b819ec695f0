#pragma once

#include "vxattribute/attribute_map.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace vxattribute::impl {

/// Puts elements that are known together into map order.
class MapOrder {
  public:
    /// Sorts `count` elements, the earlier of equal names first.
    ///
    /// @param nameAt  Returns the name of the element at an index.
    template <typename NameAt>
    void sort(std::size_t count, NameAt nameAt);

    /// Calls `use(index)` for each element in map order, but of equal names for the last one only.
    template <typename Use>
    void for_each(Use use) const;

  private:
    struct Rank {
        std::uintptr_t key; // the address of the name
        std::size_t index;
    };

    /// Returns true if no key is below or equal to the one before.
    static bool is_sorted(std::span<Rank const> ranks) noexcept;

    std::vector<Rank> m_ranks;
};

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

    /// Makes a map of copies of the attributes. Of equal names the last is kept.
    static AttributeMap make(std::span<Attribute const> attributes);

  private:
    std::vector<std::pair<AttributeName, AttributeValue>> m_elements;
    /// Of the maps that were made last, by their sizes: nested maps then keep their orders apart.
    std::array<MapOrder, 4> m_orders;
};

} // namespace vxattribute::impl
