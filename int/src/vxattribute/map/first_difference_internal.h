#pragma once

#include "vxattribute/map/nested_maps_internal.h"

#include <span>
#include <vector>

namespace vxattribute::impl {

/// Two values of maps that are being compared.
struct OpenMapsPair {
    MapsCursor a;
    MapsCursor b;
};

/// The first difference of two lists of maps, in map order, or 0. For different names or lengths it
/// is -1 or 1. For two values of one name that do not both hold maps it is what `difference`
/// returns.
///
/// Maps that share a holder do not differ, even if a value in them does not equal itself.
template <typename Difference>
int first_difference(std::span<AttributeMap const> a, std::span<AttributeMap const> b,
                     Difference difference) {
    std::vector<OpenMapsPair> open;
    open.push_back({MapsCursor(a), MapsCursor(b)});
    while (!open.empty()) {
        OpenMapsPair & pair = open.back();
        MapsCursor::Element const * const x = pair.a.next_element();
        MapsCursor::Element const * const y = pair.b.next_element();
        if (x == y) { // both maps are at their end, or they share a holder: skip to the next ones
            bool const isMoreOfA = pair.a.next_map();
            bool const isMoreOfB = pair.b.next_map();
            if (isMoreOfA != isMoreOfB) {
                return isMoreOfA ? 1 : -1;
            }
            if (!isMoreOfA) {
                open.pop_back();
            }
        } else if (x == nullptr || y == nullptr) {
            return x != nullptr ? 1 : -1;
        } else if (!(x->first == y->first)) {
            return x->first < y->first ? -1 : 1;
        } else if (holds_maps(x->second) && holds_maps(y->second)) {
            open.push_back({MapsCursor(maps_of(x->second)), MapsCursor(maps_of(y->second))});
        } else if (int const found = difference(x->second, y->second); found != 0) {
            return found;
        }
    }
    return 0;
}

} // namespace vxattribute::impl
