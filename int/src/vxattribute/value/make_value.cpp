#include "vxattribute/make_value.h"

#include "vxattribute/map/map_builder_internal.h"

namespace vxattribute {

AttributeMap make_map(std::span<Attribute const> attributes) {
    if (attributes.empty()) {
        return AttributeMap();
    }
    impl::MapBuilder builder;
    builder.reserve(attributes.size());
    for (Attribute const & attribute : attributes) {
        builder.add(attribute.name(), attribute.value());
    }
    return builder.take(0);
}

AttributeMap make_map(std::initializer_list<Attribute> attributes) {
    return make_map(std::span<Attribute const>(attributes.begin(), attributes.size()));
}

} // namespace vxattribute
