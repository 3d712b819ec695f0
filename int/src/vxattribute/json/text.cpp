#include "vxattribute/error_codes.h"
#include "vxattribute/json/boxes_internal.h"
#include "vxattribute/json/direct_reader_internal.h"
#include "vxattribute/json/render_visitor_internal.h"
#include "vxattribute/json_marshaler.h"
#include "vxattribute/json_text.h"
#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"
#include "vxjson/direct_read_impl.h"

#include <algorithm>

namespace vxattribute {

namespace {

/// Also reads the rest of the text, so that an error after the value is raised.
AttributeValue only_value(vxjson::Reader & reader, AttributeValue && value) {
    if (reader.next_value()) {
        reader.fail("A second JSON document where one was expected", {},
                    VXCORE_LOCATION("vxattribute::value_from_json()"));
    }
    return std::move(value);
}

vxjson::impl::PlainText limits(vxjson::Document::Options const & options) noexcept {
    return vxjson::impl::DirectRead::limits(options.tokenizer, options.reader);
}

/// Reads a text that is one plain object or array, without a tokenizer and a reader.
bool read_plain(std::string_view text, vxjson::impl::PlainText plain, AttributeValue & value) {
    plain.at = text.data();
    if (text.starts_with("\xEF\xBB\xBF")) {
        plain.at += 3;
    }
    if (!plain.cut(text.data() + text.size())) {
        return false;
    }
    impl::DirectReader reader(plain);
    return reader.read(value) && reader.closing() == plain.last;
}

AttributeValue read_tolerantly(std::string_view text, vxjson::Document::Options const & options) {
    vxjson::Document document(text.data(), text.size(), options);
    return only_value(document.reader(), impl::read_through_values(document.reader()));
}

/// Makes the buffer large enough for the whole text and for one byte more, whose absence shows the
/// end, so that the text can be read directly. Only for a stream that knows its size, which may be
/// wrong; hence the limit.
vxjson::Document::Options with_room_for_all(vxcore::IReadStream & stream,
                                            vxjson::Document::Options options) {
    constexpr long long maxSize = 16 << 20;
    if (long long const size = stream.size(); size >= 0 && size < maxSize) {
        options.tokenizer.buffer_size =
            std::max(options.tokenizer.buffer_size, static_cast<unsigned int>(size) + 1);
    }
    return options;
}

vxjson::Document::Options boxed(JsonReadOptions const & options) {
    vxjson::Document::Options result = options;
    result.reader.allow_empty_names = true;
    result.reader.allow_scalars = true;
    return result;
}

void write(vxjson::TextWriter & writer, AttributeValue const & value,
           JsonTextOptions const & options) {
    impl::write_json_value(writer, value, options);
    writer.finish();
}

[[noreturn]] void throw_no_map(AttributeValue const & value) {
    bool const isMap = value.type() == ValueTypeId::typeAttributeMap;
    vxcore::ErrorComposer(isMap ? "Expected one JSON object, found {@cardinality}"
                                : "Expected a JSON object, found a value of type {@actualType}")
        .param("cardinality", vxcore::to_string(value.size()))
        .param("actualType", value.type().name())
        .throw_error(isMap ? error::vxattribute_value_cardinality_expectSingle
                           : error::vxattribute_value_type_mismatch,
                     VXCORE_LOCATION("vxattribute::map_from_json()"));
}

AttributeMap only_map(AttributeValue const & value) {
    if (value.type() != ValueTypeId::typeAttributeMap || value.size() != 1) {
        throw_no_map(value);
    }
    return value.get<AttributeMap>();
}

vxjson::TextWriter::Options writer_options(JsonTextOptions const & options) {
    vxjson::TextWriter::Options result;
    result.indent = options.indent;
    result.ascii_only = options.ascii_only;
    result.max_depth = options.max_depth;
    return result;
}

} // namespace

JsonReadOptions::operator vxjson::Document::Options() const {
    vxjson::Document::Options options;
    options.tokenizer.allow_comments = allow_comments;
    options.tokenizer.allow_unquoted_names = allow_unquoted_names;
    options.tokenizer.allow_single_quotes = allow_single_quotes;
    options.tokenizer.validate_utf8 = validate_utf8;
    options.tokenizer.max_depth = max_depth;
    options.tokenizer.uri = uri;
    options.reader.allow_reserved_names = allow_reserved_names;
    return options;
}

AttributeValue value_from_json(std::string_view text) {
    static vxjson::impl::PlainText const defaults = limits(JsonReadOptions());
    AttributeValue value;
    if (read_plain(text, defaults, value)) {
        return value;
    }
    return read_tolerantly(text, JsonReadOptions());
}

AttributeValue value_from_json(std::string_view text, vxjson::Document::Options const & options) {
    AttributeValue value;
    if (read_plain(text, limits(options), value)) {
        return value;
    }
    return read_tolerantly(text, options);
}

AttributeValue value_from_json(std::string_view text, JsonReadOptions const & options) {
    if (options.arrays == eJsonArrays_Plain) {
        return value_from_json(text, vxjson::Document::Options(options));
    }
    vxjson::Document document(text.data(), text.size(), boxed(options));
    return only_value(document.reader(), impl::read_boxed(document.reader()));
}

AttributeValue value_from_json(vxcore::IReadStream & stream, JsonReadOptions const & options) {
    if (options.arrays == eJsonArrays_Plain) {
        return value_from_json(stream, vxjson::Document::Options(options));
    }
    vxjson::Document document(stream, boxed(options));
    return only_value(document.reader(), impl::read_boxed(document.reader()));
}

AttributeValue value_from_json(vxcore::IReadStream & stream) {
    return value_from_json(stream, vxjson::Document::Options(JsonReadOptions()));
}

AttributeValue value_from_json(vxcore::IReadStream & stream,
                               vxjson::Document::Options const & options) {
    vxjson::Document document(stream, with_room_for_all(stream, options));
    AttributeValue value = read_attribute_value(document.reader());
    return only_value(document.reader(), std::move(value));
}

AttributeMap map_from_json(std::string_view text) {
    return only_map(value_from_json(text));
}

AttributeMap map_from_json(std::string_view text, JsonReadOptions const & options) {
    return only_map(value_from_json(text, options));
}

AttributeMap map_from_json(vxcore::IReadStream & stream, JsonReadOptions const & options) {
    return only_map(value_from_json(stream, options));
}

std::string value_to_json(AttributeValue const & value, JsonTextOptions const & options) {
    std::string text;
    vxjson::TextWriter writer(text, writer_options(options));
    write(writer, value, options);
    return text;
}

void write_json(vxjson::TextWriter::ITextTarget & target, AttributeValue const & value,
                JsonTextOptions const & options) {
    vxjson::TextWriter writer(target, writer_options(options));
    write(writer, value, options);
}

} // namespace vxattribute
