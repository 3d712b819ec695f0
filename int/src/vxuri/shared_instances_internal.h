#pragma once

#include "vxuri/uri_parse_data.h"

/// The two references of empty text that all others share.
namespace vxuri::impl {

/// Made on first use, without a lock: a load-time object of this library gets both before there are
/// other threads. After that object's destruction each call makes a new instance. Only static
/// objects call that late, when the process ends.
///
/// @cost  One change of a count.
vxcore::RefCountPtr<UriParseData const> undefined_instance();
vxcore::RefCountPtr<UriParseData const> empty_instance();

} // namespace vxuri::impl
