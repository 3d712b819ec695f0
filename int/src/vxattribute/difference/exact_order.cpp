#include "vxattribute/difference/exact_order_internal.h"
#include "vxattribute/map/first_difference_internal.h"

#include <algorithm>

namespace vxattribute::impl {

namespace {

template <typename T>
int order_of_elements(std::span<T const> a, std::span<T const> b) {
    std::size_t const shared = std::min(a.size(), b.size());
    for (std::size_t i = 0; i != shared; ++i) {
        if (int const order = exact_order(a[i], b[i]); order != 0) {
            return order;
        }
    }
    return int{a.size() > b.size()} - int{a.size() < b.size()};
}

/// Of two values that do not both hold maps.
int order_of_leaves(AttributeValue const & a, AttributeValue const & b) {
    if (!(a.type() == b.type())) {
        return a.type().compare(b.type());
    }
    int order = 0; // two nulls have no elements
    visit_elements(a, [&]<typename T>(std::span<T const> elementsOfA) {
        if constexpr (!std::is_same_v<T, AttributeMap>) {
            order = order_of_elements(elementsOfA, elements<T>(b));
        }
    });
    return order;
}

} // namespace

int exact_order(AttributeMap const & a, AttributeMap const & b) {
    return first_difference({&a, 1}, {&b, 1}, order_of_leaves);
}

int exact_order(AttributeValue const & a, AttributeValue const & b) {
    return holds_maps(a) && holds_maps(b)
               ? first_difference(maps_of(a), maps_of(b), order_of_leaves)
               : order_of_leaves(a, b);
}

} // namespace vxattribute::impl
