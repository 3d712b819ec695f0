#include "vxattribute/to_text.h"

#include "vxattribute/trace_formatter.h"

#include <locale>
#include <sstream>

namespace vxattribute {

namespace {

/// A stream whose numbers do not depend on the locale of the program.
std::ostringstream classic_stream() {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    return stream;
}

} // namespace

std::string to_text(AttributeValue const & value) {
    std::ostringstream stream = classic_stream();
    value.write_trace(stream, defaultTraceFormatter, 0);
    return std::move(stream).str();
}

std::string to_text(AttributeMapBase const & map) {
    std::ostringstream stream = classic_stream();
    map.write_trace(stream, defaultTraceFormatter, 0);
    return std::move(stream).str();
}

std::string to_text(Attribute const & attribute) {
    std::ostringstream stream = classic_stream();
    stream << attribute;
    return std::move(stream).str();
}

} // namespace vxattribute
