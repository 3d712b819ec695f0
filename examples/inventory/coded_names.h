#pragma once

#include "step_timer.h"

#include "vxattribute/attribute_map.h"

namespace inventory {

/// Composes the package of the names that attributes of packages have, and sends the inventory
/// through the binary form with these names as numbers: to a reader that has the package and to one
/// that lacks it. Prints what that saves of `plainSize` bytes.
///
/// The names of the packages themselves are data, different on every machine. They stay texts.
///
/// @raises error.inventory.data: what was read back is not what it should be.
void show_coded(vxattribute::AttributeMap const & packages, unsigned int plainSize,
                unsigned int attributes, StepTimer & timer);

} // namespace inventory
