#pragma once

#include "vxcore/error_info.h"
#include "vxjson/source_position.h"

#include <string_view>

namespace vxjson::impl {

/// Creates the error for a failure at a place in the text. The message starts with
/// "[line 3, pos 7]: ", which includes the origin of the text if it is known. The parameters `uri`,
/// `line`, `linePos` and `sourcePos` are added to `params`.
vxcore::ErrorInfo::Ptr create_positioned(vxcore::ErrorCode const & code, std::string_view message,
                                         vxcore::ErrorParams params,
                                         vxcore::SourceLocation location,
                                         SourcePosition const & position,
                                         vxcore::ErrorInfo::Ptr nested = nullptr);

} // namespace vxjson::impl
