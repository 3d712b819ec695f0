#include "vxattribute/json/render_visitor_internal.h"
#include "vxattribute/json_marshaler.h"
#include "vxattribute/json_text.h"

namespace vxattribute {

namespace {

AttributeValue read_only_value(vxjson::Reader & reader) {
    AttributeValue value = read_attribute_value(reader);
    // Also reads the rest of the text, so that an error after the value is raised.
    if (reader.next_value()) {
        reader.fail("A second JSON document where one was expected", {},
                    VXCORE_LOCATION("vxattribute::value_from_json()"));
    }
    return value;
}

void write(vxjson::TextWriter & writer, AttributeValue const & value, bool sorted) {
    impl::JsonRenderVisitor(writer, sorted).write(value);
    writer.finish();
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
    return value_from_json(text, JsonReadOptions());
}

AttributeValue value_from_json(std::string_view text, vxjson::Document::Options const & options) {
    vxjson::Document document(text.data(), text.size(), options);
    return read_only_value(document.reader());
}

AttributeValue value_from_json(vxcore::IReadStream & stream) {
    return value_from_json(stream, JsonReadOptions());
}

AttributeValue value_from_json(vxcore::IReadStream & stream,
                               vxjson::Document::Options const & options) {
    vxjson::Document document(stream, options);
    return read_only_value(document.reader());
}

std::string value_to_json(AttributeValue const & value, JsonTextOptions const & options) {
    std::string text;
    vxjson::TextWriter writer(text, writer_options(options));
    write(writer, value, options.sorted_names);
    return text;
}

void write_json(vxjson::TextWriter::ITextTarget & target, AttributeValue const & value,
                JsonTextOptions const & options) {
    vxjson::TextWriter writer(target, writer_options(options));
    write(writer, value, options.sorted_names);
}

} // namespace vxattribute
