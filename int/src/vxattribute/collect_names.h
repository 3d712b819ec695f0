#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/attribute_name_package.h"

namespace vxattribute {

/// Adds the names of the map and of all maps nested in it, or of all maps in the value, to the
/// composer.
///
/// Collect from samples of what a stream will carry to get a package that fits:
///
///     AttributeNamePackage::Composer composer;
///     collect_names(settings, composer);
///     auto const package = composer.compose();
///
/// A name that comes only once, such as a key that is data, takes a place in the package and saves
/// nothing. Where the outer names are of that kind, collect from the inner maps alone.
///
/// @cost Each map is walked as often as it occurs in the value. Depth takes memory but no stack.
///       When memory runs out, a part of the names has been added.
VXATTRIBUTE_API void collect_names(AttributeMapBase const & map,
                                   AttributeNamePackage::Composer & composer);
VXATTRIBUTE_API void collect_names(AttributeValue const & value,
                                   AttributeNamePackage::Composer & composer);

} // namespace vxattribute
