#pragma once

#include "vxcore/error_info.h"
#include "vxcore/simple_date_time.h"
#include "vxserialize/export.h"
#include "vxserialize/fwd.h"
#include "vxuri/uri_reference.h"

/// Types that are no element kind of their own, as elements. No form starts with a list, so it can
/// stand where a list of such forms may stand too.
namespace vxserialize {

/// Writes an error with all that led to it: a record of a list of links, each the code, the
/// message, the parameters and the place. A null pointer is the null element.
///
/// @raises error.vxserialize.depth: more than `max_error_chain` links. Nothing is written then.
VXSERIALIZE_API void write_error_info(Writer & writer, vxcore::ErrorInfo const * info);
VXSERIALIZE_API void write_error_info(Writer & writer, vxcore::ErrorInfo::Ptr const & info);

/// Reads an error, which then keeps its own code name; null for the null element.
///
/// @raises error.vxserialize.depth: more than `max_error_chain` links.
///         error.vxserialize.data: a chain without a link.
VXSERIALIZE_API vxcore::ErrorInfo::Ptr read_error_info(Reader & reader);

/// A date and time without a zone goes as the absolute time of the same ticks.
VXSERIALIZE_API void write_simple_date_time(Writer & writer, vxcore::SimpleDateTime value);
VXSERIALIZE_API vxcore::SimpleDateTime read_simple_date_time(Reader & reader);

/// A reference goes as its text, the undefined one as the null element. An undefined reference that
/// has a text goes as a record of the text; it comes back with its components split anew.
VXSERIALIZE_API void write_uri(Writer & writer, vxuri::UriReference const & value);
VXSERIALIZE_API vxuri::UriReference read_uri(Reader & reader);

} // namespace vxserialize
