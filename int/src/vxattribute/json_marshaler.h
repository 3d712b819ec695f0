#pragma once

#include "vxattribute/attribute_value.h"
#include "vxjson/fwd.h"
#include "vxjson/reader.h"

namespace vxattribute {

/// Reads one value of JSON: the current value of the reader or, at the start of a document, the
/// next one.
///
/// | JSON | value |
/// | --- | --- |
/// | null, boolean, string | a scalar of that type |
/// | number | Integer when the nearest double is whole and fits 64 bits, otherwise Double |
/// | array | a list of booleans, strings, maps, or numbers (Integer when all of them are whole) |
/// | empty array | the empty String value |
/// | object | one map; of equal names the last is kept |
/// | object whose first property is "vxserialize" | the value in its string |
///
/// The last row is the form in which `write_attribute_value` writes all that has no plain form. Any
/// further properties of such an object are dropped. Elements of an array are never read in this
/// way. docs/guide/json.md lists what plain JSON loses.
///
/// Cost. Names are cached during a call, so that similar objects intern each name once. Depth takes
/// memory but no stack; the options of the tokenizer limit it. A string may have 134217728 bytes,
/// one in "vxserialize" any number.
///
/// Threads. The reader must not be used by another thread during the call.
///
/// @raises error.vxjson.reader: there is no value; the elements of an array are of different types,
///         or are arrays or nulls; a "vxserialize" property is not a string or does not contain a
///         value (the nested error is the reason). After any of these the reader cannot be used
///         again. The message starts with line and position.
///         What the reader and the values raise passes through.
VXATTRIBUTE_API AttributeValue read_attribute_value(vxjson::Reader & reader);

/// The same into `value`, which is as it was when this raises.
VXATTRIBUTE_API void read_attribute_value(vxjson::Reader & reader, AttributeValue & value);

/// Writes a value as JSON that reads back as an equal value.
///
/// Null, booleans, integers from -2^53 to 2^53, strings and maps are written plainly, several
/// elements as an array. Everything else is written as text into an object with the single property
/// "vxserialize": all other types (doubles too), larger integers, empty values of any type but
/// String, and maps with a name that is empty or is "vxserialize". Plain objects may contain such
/// objects.
///
/// A reader refuses a document that is only a scalar: put it into a map. It also refuses names such
/// as "class" unless `allow_reserved_names` is set, so set it for reading back.
///
/// Names are in map order, so the text is not stable between processes. `value_to_json` and
/// `write_json` can sort them (json_text.h).
///
/// Cost. The text in "vxserialize" reaches the writer in pieces, never as a whole. Depth takes
/// memory but no stack.
///
/// @raises what the writer raises; error.vxserialize.depth, when lists in "vxserialize" nest too
///         deep.
VXATTRIBUTE_API void write_attribute_value(vxjson::Writer & writer, AttributeValue const & value);

} // namespace vxattribute
