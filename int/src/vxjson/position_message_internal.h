#pragma once

#include "vxcore/error_info.h"
#include "vxjson/source_position.h"

#include <string_view>

namespace vxjson::impl {

/// A failure at a place: the message gets "[line 3, pos 7]: " in front, with the origin where there
/// is one, and all of the position goes into the parameters.
vxcore::ErrorInfo::Ptr create_positioned(vxcore::ErrorCode const & code, std::string_view message,
                                         vxcore::ErrorParams params,
                                         vxcore::SourceLocation location,
                                         SourcePosition const & position,
                                         vxcore::ErrorInfo::Ptr nested = nullptr);

} // namespace vxjson::impl
