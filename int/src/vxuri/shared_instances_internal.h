#pragma once

#include "vxuri/uri_parse_data.h"

/// The two references of empty text that all others share.
namespace vxuri::impl {

/// @cost  One count. Made on first use, without a lock: a load-time object of this library asks for
///        both before other threads can. After that object's end each call makes an instance of its
///        own, for references that static objects make while the process ends.
vxcore::RefCountPtr<UriParseData const> undefined_instance();
vxcore::RefCountPtr<UriParseData const> empty_instance();

} // namespace vxuri::impl
