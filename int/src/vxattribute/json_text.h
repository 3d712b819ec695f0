#pragma once

#include "vxattribute/attribute_value.h"
#include "vxjson/document.h"
#include "vxjson/text_writer.h"

#include <string>
#include <string_view>

/// Values to and from JSON text, in one call; json_marshaler.h tells which JSON.
namespace vxattribute {

/// How a value is laid out as text.
struct JsonTextOptions {
    unsigned int indent = 0; ///< blanks per level, each value on its own line; 0: no blanks

    /// Names in the order of their bytes, so that the same value gives the same text in every
    /// process; else in map order, which differs. It costs a sort of each map. Maps within
    /// "vxserialize" stay in map order.
    bool sorted_names = false;

    bool ascii_only = false;      ///< escapes all from U+0080 on; raises on ill-formed UTF-8
    unsigned int max_depth = 256; ///< objects and arrays that may be open at one moment
};

/// The value of a text that is one JSON document. Names such as "class" are taken.
///
/// @raises error.vxjson.reader.tokenizer.syntaxError: the text is not JSON.
/// @raises error.vxjson.reader: as `read_attribute_value`; more than one document.
/// @raises error.vxjson.reader.unexpected.token: the text is a scalar, or a token stands where none
///         of its kind may.
VXATTRIBUTE_API AttributeValue value_from_json(std::string_view text);
VXATTRIBUTE_API AttributeValue value_from_json(std::string_view text,
                                               vxjson::Document::Options const & options);

/// The same over a stream, which is read to its end through a buffer.
VXATTRIBUTE_API AttributeValue value_from_json(vxcore::IReadStream & stream);
VXATTRIBUTE_API AttributeValue value_from_json(vxcore::IReadStream & stream,
                                               vxjson::Document::Options const & options);

/// The value as JSON text. A value that is not one of maps, nor an array, gives a text that
/// `value_from_json` refuses: put it into a map.
///
/// @raises error.vxjson.writer.unexpected.container.begin: beyond `max_depth`.
VXATTRIBUTE_API std::string value_to_json(AttributeValue const & value,
                                          JsonTextOptions const & options = {});

/// The same to a target, through a buffer.
VXATTRIBUTE_API void write_json(vxjson::TextWriter::ITextTarget & target,
                                AttributeValue const & value, JsonTextOptions const & options = {});

} // namespace vxattribute
