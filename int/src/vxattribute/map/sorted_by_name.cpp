#include "vxattribute/sorted_by_name.h"

#include <algorithm>

namespace vxattribute {

std::vector<AttributeMapBase::const_iterator> sorted_by_name(AttributeMapBase const & map) {
    std::vector<AttributeMapBase::const_iterator> sorted;
    sorted.reserve(map.size());
    for (auto element = map.begin(); element != map.end(); ++element) {
        sorted.push_back(element);
    }
    // Names are unique, so the result does not depend on the stability of the sort.
    std::sort(sorted.begin(), sorted.end(),
              [](auto const & a, auto const & b) { return a->first.value() < b->first.value(); });
    return sorted;
}

} // namespace vxattribute
