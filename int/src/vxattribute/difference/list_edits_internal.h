#pragma once

#include "vxattribute/attribute_value.h"

#include <vector>

namespace vxattribute::impl {

/// A change of one list into another: an element of one of them, or of both in the same place.
struct ListEdit {
    unsigned int a; ///< index in the one list, or of the element before which `b` is inserted
    unsigned int b; ///< index in the other, or the one that `a` would have there
    bool isInA;
    bool isInB;
};

/// What turns the list `a` into `b`, in ascending order. Identical elements in the same place are
/// left out, but for some pairs of maps. difference.h describes how elements are paired.
///
/// @pre  The values have the same type, which is not null.
/// @param stepsLeft  Reduced by the steps taken; without any, what is left is paired by index, and
///                   nothing in maps is looked at.
std::vector<ListEdit> list_edits(AttributeValue const & a, AttributeValue const & b,
                                 long long & stepsLeft);

} // namespace vxattribute::impl
