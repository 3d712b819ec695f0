/// Reads arbitrary JSON texts in both ways, directly from the text and over the values of a reader.
/// Values, errors and places must agree, also from a value inside the text on.

#include "check.h"
#include "stream_checks.h"

#include "vxattribute/json/roads.h"

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size);

/// Takes two bytes of options, then a JSON text.
extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size) {
    if (size < 2) {
        return 0;
    }
    std::string const text(reinterpret_cast<char const *>(data) + 2, size - 2);
    vxjson::Document::Options options;
    options.tokenizer.allow_comments = (data[0] & 1) != 0;
    options.tokenizer.allow_unquoted_names = (data[0] & 1) != 0;
    options.tokenizer.allow_single_quotes = (data[0] & 1) != 0;
    options.reader.allow_reserved_names = (data[0] & 2) != 0;
    options.tokenizer.validate_utf8 = (data[0] & 4) != 0;
    options.tokenizer.max_depth = (data[0] & 8) != 0 ? 3 : 256;
    options.tokenizer.max_number_size = (data[0] & 16) != 0 ? 3 : 65536;
    vxfuzz::ViewStream stream(text, false);
    std::string const found = vxtest::difference_of_roads(text, stream, options, data[1] & 15u);
    vxfuzz::check(found.empty(), found.c_str());
    return 0;
}
