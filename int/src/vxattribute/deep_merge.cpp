#include "vxattribute/deep_merge.h"

#include "vxattribute/nested_maps_internal.h"

namespace vxattribute {

AttributeMap merged_deep(AttributeMapBase const & winner, AttributeMapBase const & other) {
    MutableAttributeMap merged(winner.merged_with(other));
    for (auto const & [name, value] : winner) {
        AttributeMap const * const inner = impl::scalar_map(value);
        AttributeValue const * const otherValue = other.query_ptr(name);
        AttributeMap const * const otherInner =
            otherValue != nullptr ? impl::scalar_map(*otherValue) : nullptr;
        if (inner != nullptr && otherInner != nullptr) {
            merged.add(name, AttributeValue(merged_deep(*inner, *otherInner)));
        }
    }
    return merged;
}

} // namespace vxattribute
