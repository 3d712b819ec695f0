#include "vxattribute/make_value.h"

namespace vxattribute {

AttributeMap make_map(std::initializer_list<Attribute> attributes) {
    MutableAttributeMap map;
    for (Attribute const & attribute : attributes) {
        map.add(attribute);
    }
    return map;
}

} // namespace vxattribute
