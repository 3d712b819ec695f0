#include "vxattribute/collect_names.h"

#include "vxattribute/map/nested_maps_internal.h"

namespace vxattribute {

namespace {

/// Maps that are still to be visited. A list in place of recursion: input decides how deep maps
/// nest.
using Pending = std::vector<AttributeMapBase const *>;

void add_maps(AttributeValue const & value, Pending & pending) {
    if (impl::holds_maps(value)) {
        for (AttributeMap const & map : impl::maps_of(value)) {
            pending.push_back(&map);
        }
    }
}

void collect(Pending & pending, AttributeNamePackage::Composer & composer) {
    while (!pending.empty()) {
        AttributeMapBase const & map = *pending.back();
        pending.pop_back();
        for (auto const & [name, value] : map) {
            composer.add(name);
            add_maps(value, pending);
        }
    }
}

} // namespace

void collect_names(AttributeMapBase const & map, AttributeNamePackage::Composer & composer) {
    Pending pending = {&map};
    collect(pending, composer);
}

void collect_names(AttributeValue const & value, AttributeNamePackage::Composer & composer) {
    Pending pending;
    add_maps(value, pending);
    collect(pending, composer);
}

} // namespace vxattribute
