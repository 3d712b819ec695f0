#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/attribute_name_package.h"

namespace vxattribute {

/// Adds the names of the map and of all maps in it, or of all maps in the value, to the composer.
///
/// Run it over samples of what a stream will carry to get a package that fits:
///
///     AttributeNamePackage::Composer composer;
///     collect_names(settings, composer);
///     auto const package = composer.compose();
///
/// Names that come once, such as keys that are data, cost a place in the package and gain nothing:
/// collect from the inner maps alone where the outer names are such.
///
/// @cost Each map is walked as often as it stands in the value. Depth takes memory, no stack. When
///       memory runs out the composer has a part of the names.
VXATTRIBUTE_API void collect_names(AttributeMapBase const & map,
                                   AttributeNamePackage::Composer & composer);
VXATTRIBUTE_API void collect_names(AttributeValue const & value,
                                   AttributeNamePackage::Composer & composer);

} // namespace vxattribute
