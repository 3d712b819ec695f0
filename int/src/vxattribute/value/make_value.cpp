#include "vxattribute/make_value.h"

#include "vxattribute/map/map_builder_internal.h"

namespace vxattribute {

AttributeMap make_map(std::initializer_list<Attribute> attributes) {
    return make_map(std::span<Attribute const>(attributes.begin(), attributes.size()));
}

AttributeMap make_map(std::span<Attribute const> attributes) {
    return impl::MapBuilder::make(attributes);
}

} // namespace vxattribute
