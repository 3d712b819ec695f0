#include "vxattribute/to_text.h"

#include "vxattribute/attribute_name_package.h"
#include "vxattribute/ostream.h"
#include "vxattribute/trace/text_stream_internal.h"
#include "vxattribute/trace_formatter.h"
#include "vxcore/text_conversion.h"

#include <ostream>

namespace vxattribute {

std::string to_text(AttributeValue const & value) {
    impl::TextStream stream;
    value.write_trace(stream, defaultTraceFormatter, 0);
    return std::move(stream).str();
}

std::string to_text(AttributeMapBase const & map) {
    impl::TextStream stream;
    map.write_trace(stream, defaultTraceFormatter, 0);
    return std::move(stream).str();
}

std::string to_text(AttributeNamePackage const & package) {
    std::string text = "package " + package.id().as_string(0) + ": " +
                       vxcore::to_string(package.size()) + " names";
    for (unsigned int position = 0; position < package.size(); ++position) {
        text.append("\n  ").append(vxcore::to_string(position)).append(" \"");
        text.append(package.at(position).value()).append("\"");
    }
    return text;
}

std::string to_text(Attribute const & attribute) {
    impl::TextStream stream;
    stream << attribute;
    return std::move(stream).str();
}

std::ostream & impl::insert_text(std::ostream & stream, AttributeValue const & value) {
    return stream << to_text(value);
}

std::ostream & impl::insert_text(std::ostream & stream, AttributeMapBase const & map) {
    return stream << to_text(map);
}

} // namespace vxattribute
