#pragma once

#include "vxcore/error_info.h"
#include "vxcore/simple_date_time.h"
#include "vxserialize/export.h"
#include "vxserialize/fwd.h"
#include "vxuri/uri_reference.h"

/// Writes and reads types that have no element kind of their own. None of them starts with a list,
/// so a caller may accept either one of them or a list of them.
namespace vxserialize {

/// Writes an error and its causes: a record of a list of links, each with code, message, parameters
/// and location. A null pointer becomes the null element.
///
/// @raises error.vxserialize.depth: more than `max_error_chain` links. Nothing is written then.
VXSERIALIZE_API void write_error_info(Writer & writer, vxcore::ErrorInfo const * info);
VXSERIALIZE_API void write_error_info(Writer & writer, vxcore::ErrorInfo::Ptr const & info);

/// Reads an error, which then owns the name of its code. Returns null for the null element.
///
/// @raises error.vxserialize.depth: more than `max_error_chain` links.
///         error.vxserialize.data: a chain without a link. Those of Reader.
VXSERIALIZE_API vxcore::ErrorInfo::Ptr read_error_info(Reader & reader);

/// A date and time without a zone is written as the absolute time of the same ticks.
VXSERIALIZE_API void write_simple_date_time(Writer & writer, vxcore::SimpleDateTime value);
VXSERIALIZE_API vxcore::SimpleDateTime read_simple_date_time(Reader & reader);

/// A reference is written as its text, the undefined one as the null element. An undefined
/// reference that has a text is written as a record of the text. Reading splits that text into
/// components again.
VXSERIALIZE_API void write_uri(Writer & writer, vxuri::UriReference const & value);
VXSERIALIZE_API vxuri::UriReference read_uri(Reader & reader);

} // namespace vxserialize
