#pragma once

#include "vxattribute/export.h"
#include "vxattribute/fwd.h"

#include <concepts>
#include <iosfwd>

/// Values and maps on streams, as `to_text` renders them. Names insert their characters, and
/// attributes name and value (attribute_name.h, attribute.h).
///
///     std::cout << config << '\n' << config["port"] << '\n';   // [Integer: {8080}]
///
/// The headers of values and maps include this one, so the operators are found wherever there is
/// something to insert: a test framework that prints what it can would otherwise mean two things in
/// one program. They are templates so that an operator of a program's own is preferred, and so that
/// nothing is converted to a value in order to be inserted.
///
/// Width and fill of the stream apply to the whole text. All values are shown but the payload of
/// Serialized and Secured: see redaction.h for secrets.
namespace vxattribute {

namespace impl {

VXATTRIBUTE_API std::ostream & insert_text(std::ostream & stream, AttributeValue const & value);
VXATTRIBUTE_API std::ostream & insert_text(std::ostream & stream, AttributeMapBase const & map);

} // namespace impl

/// @raises std::bad_alloc: no memory for the text; what the stream raises.
template <std::same_as<AttributeValue> Value>
std::ostream & operator<<(std::ostream & stream, Value const & value) {
    return impl::insert_text(stream, value);
}

template <std::derived_from<AttributeMapBase> Map>
std::ostream & operator<<(std::ostream & stream, Map const & map) {
    return impl::insert_text(stream, map);
}

} // namespace vxattribute
