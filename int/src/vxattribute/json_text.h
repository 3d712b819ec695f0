#pragma once

#include "vxattribute/attribute_map.h"
#include "vxjson/document.h"
#include "vxjson/text_writer.h"

#include <initializer_list>
#include <string>
#include <string_view>

/// Values to and from JSON text, in one call. json_marshaler.h says how values and JSON correspond,
/// and docs/guide/json.md has examples.
namespace vxattribute {

/// Arrays that no value can hold: of one element, of arrays, of nulls, of different types.
enum EJsonArrays : unsigned char {
    /// An array of one element is its element, the others are refused.
    eJsonArrays_Plain,

    /// Every array has a value, and the same option writes it again. The boxes are maps with the
    /// one name "[]" or "=" (docs/formats/boxes.md). Everything is data then: names may be empty,
    /// "vxserialize" is a name like any other, integers keep all 64 bits, and a document may be a
    /// scalar.
    eJsonArrays_Boxed
};

/// How JSON text is read. The defaults take JSON as RFC 8259 has it, whatever its names.
struct JsonReadOptions {
    bool allow_reserved_names = true;  ///< takes names such as "class"
    bool allow_comments = false;       ///< // to the end of the line, and /* */
    bool allow_unquoted_names = false; ///< words of letters, digits, "_", "$" and bytes >= 0x80
    bool allow_single_quotes = false;  ///< strings in ', and the escape \'
    bool validate_utf8 = false;        ///< refuses ill-formed UTF-8; otherwise bytes pass unchanged
    unsigned int max_depth = 256;      ///< objects and arrays that may be open at one time
    vxuri::UriReference uri = {};      ///< origin of the text, for messages
    EJsonArrays arrays = eJsonArrays_Plain; ///< for `value_from_json`

    /// The same options for `value_from_json`; the sizes that have no member here are the defaults
    /// of `vxjson::Tokenizer::Options`.
    VXATTRIBUTE_API operator vxjson::Document::Options() const;
};

/// How doubles are written.
enum EJsonDoubles : unsigned char {
    /// As {"vxserialize":"0.5"}, which reads back as an equal value.
    eJsonDoubles_Lossless,

    /// As JSON numbers, for readers that do not know this library: the fewest digits that read
    /// back as the same double, "2.0" for a whole one. A whole double reads back as an Integer,
    /// unless it is beyond 64 bits or in a list with others. NaN and infinities have no number in
    /// JSON: values that hold one, and empty values, are written as above.
    eJsonDoubles_Numbers
};

/// How a value is laid out as text.
struct JsonTextOptions {
    unsigned int indent = 0; ///< blanks per level, each value on its own line; 0: no blanks

    /// Sorts names by their bytes, so that the same value gives the same text in every process.
    /// Otherwise they are in map order, which differs. Costs a sort of each map.
    bool sorted_names = false;

    bool ascii_only = false;      ///< escapes all from U+0080 on; raises on ill-formed UTF-8
    unsigned int max_depth = 256; ///< objects and arrays that may be open at one time
    EJsonDoubles doubles = eJsonDoubles_Lossless; ///< the form of doubles
    EJsonArrays arrays = eJsonArrays_Plain;       ///< takes the boxes off that reading made
};

/// The value of a text that is one JSON document.
///
///     value_from_json(text, JsonReadOptions{.max_depth = 1000})
///
/// @param options  A JsonReadOptions, or all that the tokenizer and the reader offer. Beware: a
///                 default `vxjson::Document::Options` refuses reserved words as names.
/// @raises error.vxjson.reader.tokenizer.syntaxError: the text is not JSON.
/// @raises error.vxjson.reader: as `read_attribute_value`; more than one document.
/// @raises error.vxjson.reader.unexpected.token: the text is a scalar, or a token is in a place
///         where none of its kind may be.
VXATTRIBUTE_API AttributeValue value_from_json(std::string_view text);
VXATTRIBUTE_API AttributeValue value_from_json(std::string_view text,
                                               vxjson::Document::Options const & options);
VXATTRIBUTE_API AttributeValue value_from_json(std::string_view text,
                                               JsonReadOptions const & options);

/// Reads a stream to its end, through a buffer; otherwise as above. A stream that knows its size,
/// if that is below 16 MiB, is read into memory at once, which is faster.
///
/// @raises error.vxjson.reader.tokenizer.stream: the stream failed; its failure is nested.
VXATTRIBUTE_API AttributeValue value_from_json(vxcore::IReadStream & stream);
VXATTRIBUTE_API AttributeValue value_from_json(vxcore::IReadStream & stream,
                                               vxjson::Document::Options const & options);
VXATTRIBUTE_API AttributeValue value_from_json(vxcore::IReadStream & stream,
                                               JsonReadOptions const & options);

namespace impl {

/// Nothing converts to it, not even `{}`: the only list of it is the empty one.
struct NoJsonOption {
    NoJsonOption(NoJsonOption const &) = delete;
};

} // namespace impl

/// `{}` as options means the defaults of JsonReadOptions.
inline AttributeValue value_from_json(std::string_view text,
                                      std::initializer_list<impl::NoJsonOption>) {
    return value_from_json(text);
}

inline AttributeValue value_from_json(vxcore::IReadStream & stream,
                                      std::initializer_list<impl::NoJsonOption>) {
    return value_from_json(stream);
}

/// The map of a text that is one JSON object, and may be an array of one. The options are as for
/// `value_from_json`.
///
///     AttributeMap const config = map_from_json(text, {.allow_comments = true});
///
/// @raises As `value_from_json`. error.vxattribute.value.type.mismatch: the text is no object, or
///         one that is the lossless form of another value.
///         error.vxattribute.value.cardinality.expectSingle: an array of several objects, or none.
VXATTRIBUTE_API AttributeMap map_from_json(std::string_view text);
VXATTRIBUTE_API AttributeMap map_from_json(std::string_view text, JsonReadOptions const & options);

/// Reads a stream to its end; otherwise as above.
VXATTRIBUTE_API AttributeMap map_from_json(vxcore::IReadStream & stream,
                                           JsonReadOptions const & options = {});

/// The value as JSON text. A value that is neither of maps nor an array gives a text that
/// `value_from_json` refuses: put it into a map.
///
/// @raises error.vxjson.writer.unexpected.container.begin: beyond `max_depth`.
/// @cost   Depth takes memory and no stack.
VXATTRIBUTE_API std::string value_to_json(AttributeValue const & value,
                                          JsonTextOptions const & options = {});

/// Writes the same text to a target, through a buffer.
VXATTRIBUTE_API void write_json(vxjson::TextWriter::ITextTarget & target,
                                AttributeValue const & value, JsonTextOptions const & options = {});

} // namespace vxattribute
