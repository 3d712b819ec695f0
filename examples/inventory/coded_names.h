#pragma once

#include "step_timer.h"

#include "vxattribute/attribute_map.h"

namespace inventory {

/// Composes a name package of all attribute names of Debian packages. Sends the inventory through
/// the binary form with these names as numbers, to a reader that has the name package and to one
/// that lacks it. Prints how much of `plainSize` bytes that saves.
///
/// The names of the Debian packages are data, different on every machine. They stay texts.
///
/// @raises error.inventory.data: what was read back differs from what was written.
void show_coded(vxattribute::AttributeMap const & packages, std::size_t plainSize,
                unsigned int attributes, StepTimer & timer);

} // namespace inventory
