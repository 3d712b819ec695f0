#include "sorted_trace.h"

#include "vxattribute/elements.h"
#include "vxattribute/sorted_by_name.h"

#include <limits>
#include <locale>
#include <sstream>

namespace vxattr {

using namespace vxattribute;

namespace {

void write_map(std::ostream & stream, AttributeMap const & map, TraceFormatter const & formatter,
               unsigned int level) {
    for (auto const & element : sorted_by_name(map)) {
        formatter.render_indented(stream, level, formatter.map_element_prefix());
        stream << element->first;
        formatter.render_indented(stream, level, formatter.map_name_value_separator());
        write_sorted_trace(stream, element->second, formatter, level);
        formatter.render_indented(stream, level, formatter.map_element_suffix());
    }
}

TraceFormatter one_line_formatter(unsigned int elements, unsigned int textBytes,
                                  unsigned int dumpBytes) {
    return TraceFormatter::Composer()
        .line_prefix({})
        .indent({})
        .multiline_string_newline({"\\n", true})
        .max_multivalue_count(elements)
        .max_string_len(textBytes)
        .max_binary_value_dump_bytes(dumpBytes)
        .compose();
}

} // namespace

void write_sorted_trace(std::ostream & stream, AttributeValue const & value,
                        TraceFormatter const & formatter, unsigned int level) {
    if (value.type() != ValueTypeId::typeAttributeMap) {
        value.write_trace(stream, formatter, level);
        return;
    }
    TraceFormatter::ListParams const & list = formatter.list_map();
    std::span<AttributeMap const> const maps = elements<AttributeMap>(value);
    bool const isFramed = list.show_for_scalar() || maps.size() != 1;
    stream << (formatter.show_type() ? "[" + value.type().name() + ": " : "");
    if (isFramed) {
        formatter.render_indented(stream, level, list.prefix());
    }
    std::size_t shown = 0;
    for (AttributeMap const & map : maps) {
        if (shown == formatter.max_multivalue_count()) {
            stream << "...(+" << maps.size() - shown << ")";
            break;
        }
        if (shown++ != 0) {
            formatter.render_indented(stream, level, list.separator());
        }
        write_map(stream, map, formatter, level + 1);
    }
    if (isFramed) {
        formatter.render_indented(stream, level, list.suffix());
    }
    stream << (formatter.show_type() ? "]" : "");
}

std::string one_line_trace(AttributeValue const & value, bool isWhole) {
    constexpr unsigned int all = std::numeric_limits<unsigned int>::max();
    static TraceFormatter const brief = one_line_formatter(32, 256, 32);
    static TraceFormatter const whole = one_line_formatter(all, all, all);
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    write_sorted_trace(stream, value, isWhole ? whole : brief, 0);
    return std::move(stream).str();
}

} // namespace vxattr
