#pragma once

#include "vxattribute/attribute_value.h"
#include "vxjson/fwd.h"
#include "vxjson/reader.h"

namespace vxattribute {

/// Reads one value of JSON: the one that the reader stands on, or the next one when it stands at
/// the start of a document.
///
/// | JSON | value |
/// | --- | --- |
/// | null, boolean, string | a scalar of that type |
/// | number | Integer when its nearest double is whole and fits 64 bits, else Double |
/// | array | a list of booleans, strings, maps, or numbers (Integer when all of them are whole) |
/// | empty array | the empty String value |
/// | object | one map; of equal names the last stays |
/// | object whose first property is "vxserialize" | the value that its string holds |
///
/// The last row is what `write_attribute_value` makes of all that has no plain form; further
/// properties of such an object are dropped. It does not count for the elements of an array. What
/// is lost in reading plain JSON is told in docs/guide/json.md.
///
/// Cost. Names are remembered during a call, so that like objects intern each name once. Depth
/// costs memory and no stack: whoever hands in the tokenizer limits it. A string has at most
/// 134217728 bytes, one in "vxserialize" any number.
///
/// Threads. The reader is its caller's alone.
///
/// @raises error.vxjson.reader: there is no value; the elements of an array are of different types,
///         or are arrays or nulls; a "vxserialize" property is no string or does not hold a value
///         (the reason is the nested error). Each of these ends the reader, and its message starts
///         with the place. What reader and values raise passes through.
VXATTRIBUTE_API AttributeValue read_attribute_value(vxjson::Reader & reader);

/// The same; when it raises, `value` is as it was.
VXATTRIBUTE_API void read_attribute_value(vxjson::Reader & reader, AttributeValue & value);

/// Writes a value as JSON that reads back as an equal value.
///
/// Null, booleans, integers from -2^53 to 2^53, strings, and maps are written plainly, several
/// elements as an array. All else goes as text into an object with the one property "vxserialize":
/// every other type (doubles too), larger integers, values of no element but empty String ones, and
/// maps with a name that is empty or is "vxserialize". Such objects may stand inside plain ones.
///
/// A scalar is written too, but a reader takes no document that is one; and it refuses names such
/// as "class" unless `allow_reserved_names` is set, which whoever reads this back should do.
///
/// The text in "vxserialize" reaches the writer in pieces, never as a whole. Depth costs memory and
/// no stack.
///
/// @raises only what the writer raises, and failures of the text form (lists nested too deep).
VXATTRIBUTE_API void write_attribute_value(vxjson::Writer & writer, AttributeValue const & value);

} // namespace vxattribute
