// Entry points of rendering: values, maps, and the trace hook of each element type.

#include "vxattribute/map/elements_cursor_internal.h"
#include "vxattribute/trace/trace_list_internal.h"

namespace vxattribute {

namespace impl {

void render_value(TraceSink & sink, AttributeValue const & value) {
    // Renders the elements directly, since the virtual function would make a second sink.
    bool const hasElements = for_element_type(value.type().id(), [&]<typename T>() {
        render_elements(sink, value.begin<T>(), value.end<T>());
    });
    if (!hasElements) {
        value.write_trace(sink.stream(), sink.formatter(), sink.level());
    }
}

void render_map(TraceSink & sink, AttributeMapBase const & map) {
    // Indented once per map instead of once per element.
    std::string const prefix = sink.indented(sink.settings().map_element_prefix);
    std::string const separator = sink.indented(sink.settings().map_name_value_separator);
    std::string const suffix = sink.indented(sink.settings().map_element_suffix);
    ElementsCursor elements(map, sink.settings().sorted_names);
    while (auto const * const element = elements.next()) {
        sink.append(prefix);
        sink.insert(element->first.value());
        sink.append(separator);
        render_value(sink, element->second);
        sink.append(suffix);
    }
}

#define VX_ELEMENT_TYPE(number, Id, name, Type, ...)                                               \
    void ValueTypeTraits<Type>::write_trace(std::ostream & stream,                                 \
                                            TraceFormatter const & formatter, unsigned int indent, \
                                            Type const * begin, Type const * end) {                \
        TraceSink sink(stream, formatter, indent);                                                 \
        render_elements(sink, begin, end);                                                         \
        sink.flush();                                                                              \
    }
#include "vxattribute/element_type_table.inc"
#undef VX_ELEMENT_TYPE

} // namespace impl

void AttributeMapBase::write_trace(std::ostream & stream, TraceFormatter const & formatter,
                                   unsigned int level) const {
    impl::TraceSink sink(stream, formatter, level);
    impl::render_map(sink, *this);
    sink.flush();
}

void AttributeMapBase::write_trace(std::ostream & stream, char const * prefix,
                                   char const * separator) const {
    vxcore::SourceString const linePrefix(prefix, false);
    TraceFormatter::Composer composer;
    composer.line_prefix(linePrefix).map_element_prefix(vxcore::SourceString("\n", true));
    if (linePrefix.empty()) {
        composer.indent(vxcore::SourceString());
    }
    TraceFormatter const formatter = composer.compose();

    // The elements of this map are framed by the prefix and separator of the caller. The formatter
    // only applies to what is nested in them.
    impl::TraceSink sink(stream, formatter, 0);
    bool isFirst = true;
    for (auto const & [name, value] : *this) {
        if (!std::exchange(isFirst, false)) {
            sink.append(separator);
        }
        sink.append(prefix);
        sink.append("'");
        sink.insert(name.value());
        sink.append("' => ");
        impl::render_value(sink, value);
    }
    sink.flush();
}

} // namespace vxattribute
