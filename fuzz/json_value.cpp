/// Converts arbitrary JSON texts to values and arbitrary values to JSON. Writes each value, plain
/// or in any layout, and reads it back. Its binary form must stay the same.

#include "check.h"
#include "memory_watch.h"
#include "stream_checks.h"
#include "support/passing_writer.h"
#include "value_builder.h"

#include "vxcore/error_exception.h"

#include <algorithm>

using namespace vxattribute;

namespace {

/// Returns the binary form, which is the same only for values that agree to the last bit. Returns
/// an empty string for a value that nests too deep for it.
std::string bytes_of(AttributeValue const & value) {
    try {
        return vxfuzz::write_binary(value);
    } catch (vxcore::ErrorException const &) {
        return {};
    }
}

/// Writes the value to a TextWriter and to another writer in front of one.
void check_writers(AttributeValue const & value, unsigned char layout) {
    vxjson::TextWriter::Options options;
    options.indent = layout % 3;
    options.validate_utf8 = (layout & 0x10) != 0;
    options.ascii_only = (layout & 0x20) != 0;
    options.max_depth = (layout & 0x40) != 0 ? 4 : 256;
    vxfuzz::check(vxtest::write_value(value, options, false) ==
                      vxtest::write_value(value, options, true),
                  "all writers receive the same");
}

/// Writes the value and reads it again, from a stream in small pieces or from memory.
void check_writing(AttributeValue const & value, unsigned char layout) {
    JsonTextOptions options;
    options.indent = layout % 3;
    options.sorted_names = (layout & 0x10) != 0;
    std::string text;
    try {
        text = value_to_json(value, options);
    } catch (vxcore::ErrorException const &) {
        return; // too deep: a map that came in the lossless form may nest deeper than plain JSON
    }
    vxjson::Document::Options read;
    read.reader.allow_reserved_names = true;
    read.tokenizer.buffer_size = 1 + layout % 32u;
    vxfuzz::ViewStream stream(text, false);
    AttributeValue const back =
        (layout & 0x20) != 0 ? value_from_json(stream, read) : value_from_json(text);
    vxfuzz::check(value_to_json(back, options) == text, "what is read again is written the same");
    vxfuzz::check(bytes_of(back) == bytes_of(value), "what is written comes back the same");
}

/// Reads a text with the options that `flags` selects. Returns false when the text is refused.
bool read(std::string const & text, unsigned char flags, AttributeValue & value) {
    vxjson::Document::Options options;
    options.tokenizer.allow_comments = (flags & 1) != 0;
    options.tokenizer.allow_unquoted_names = (flags & 1) != 0;
    options.tokenizer.allow_single_quotes = (flags & 1) != 0;
    options.tokenizer.buffer_size = 1 + (flags & 0x1Fu);
    options.reader.allow_reserved_names = (flags & 2) != 0;
    vxfuzz::ViewStream stream(text, false);
    vxfuzz::MemoryWatch const watch;
    vxjson::Document document(stream, options);
    try {
        read_attribute_value(document.reader(), value);
    } catch (vxcore::ErrorException const & e) {
        vxfuzz::check(value == AttributeValue("kept"), "a failure leaves the target as it was");
        vxfuzz::check(e.info()->text().size() < 300, "messages are of a modest size");
        return false;
    }
    vxfuzz::check(watch.peak() <= 256 * text.size() + 131072, "memory grows with the text");
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size);

/// Takes two bytes of options, then a JSON text or the input of a ValueBuilder.
extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    AttributeValue value = "kept";
    if ((data[0] & 0x40) != 0) {
        vxfuzz::Input input(data + 2, size - 2);
        value = make_map({{"class", vxfuzz::ValueBuilder(input).value()}});
    } else if (!read(std::string(reinterpret_cast<char const *>(data) + 2, size - 2), data[0],
                     value)) {
        return 0;
    }
    if (value.type() != ValueTypeId::typeAttributeMap || value.empty()) {
        value = make_map({{"a", value}}); // a scalar is no document
    }
    check_writers(value, data[1]);
    check_writing(value, data[1]);
    return 0;
}
