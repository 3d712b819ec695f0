#include "vxattr/files/json_file.h"

#include "vxattr/failure.h"
#include "vxattr/files/json_losses.h"
#include "vxattribute/elements.h"
#include "vxattribute/json_marshaler.h"
#include "vxattribute/make_value.h"
#include "vxcore/source_location.h"
#include "vxcore/text_conversion.h"
#include "vxfile/value_file.h"
#include "vxjson/reader.h"
#include "vxjson/tokenizer.h"

#include <cstdio>

namespace vxattr {

using namespace vxattribute;

namespace {

void report(std::string const & place, std::string const & text) {
    std::fputs(("vxattr: " + visible(place) + ": " + visible(text) + '\n').c_str(), stderr);
}

void report_losses(Input const & input, JsonLosses const & losses, bool isStrict) {
    if (losses.count() != 0 && isStrict) {
        throw Failure(input.place(), losses.texts().front());
    }
    for (std::string const & text : losses.texts()) {
        report(input.place(), text);
    }
    if (losses.count() > losses.texts().size()) {
        report(input.place(), "and " + vxcore::to_string(losses.count() - losses.texts().size()) +
                                  " more of these");
    }
}

/// Whether JSON shows the value as neither an object nor an array.
bool is_bare(AttributeValue const & value) {
    if (value.is_null()) {
        return true;
    }
    if (value.size() != 1) {
        return false;
    }
    if (value.type() == ValueTypeId::typeInteger) {
        constexpr long long maxPlain = 1LL << 53;
        long long const number = value.get<long long>();
        return -maxPlain <= number && number <= maxPlain;
    }
    return value.type() == ValueTypeId::typeBoolean || value.type() == ValueTypeId::typeString;
}

} // namespace

AttributeValue read_json(Input & input, bool isStrict) {
    vxjson::Tokenizer tokenizer(input);
    JsonLosses losses(tokenizer);
    // Accept reserved words such as "class" as names: write_json writes them too.
    vxjson::Reader reader(losses, {true});
    AttributeValue value = read_attribute_value(reader);
    if (reader.next_value()) {
        reader.fail("A second document follows the first", {},
                    VXCORE_LOCATION("vxattr::read_json()"));
    }
    report_losses(input, losses, isStrict);
    return value;
}

void write_json(Output & output, AttributeValue const & value, JsonLayout const & layout) {
    bool const isWrapped = !layout.wrap.empty() && is_bare(value);
    vxfile::write_value(
        output, isWrapped ? AttributeValue(make_map({{layout.wrap, value}})) : value,
        vxfile::EFileForm::eJson, {.indent = layout.indent, .sorted_names = layout.isSorted});
}

} // namespace vxattr
