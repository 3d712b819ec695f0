// The ways into rendering: values, maps, and the trace hook of each element type.

#include "vxattribute/trace/trace_list_internal.h"

namespace vxattribute {

namespace impl {

void render_value(TraceSink & sink, AttributeValue const & value) {
    // Goes to the elements directly: the virtual call would need a sink of its own.
    bool const hasElements = for_element_type(value.type().id(), [&]<typename T>() {
        render_elements(sink, value.begin<T>(), value.end<T>());
    });
    if (!hasElements) {
        value.write_trace(sink.stream(), sink.formatter(), sink.level());
    }
}

void render_map(TraceSink & sink, AttributeMapBase const & map) {
    std::string const prefix = sink.indented(sink.settings().map_element_prefix);
    std::string const separator = sink.indented(sink.settings().map_name_value_separator);
    std::string const suffix = sink.indented(sink.settings().map_element_suffix);
    for (auto const & [name, value] : map) {
        sink.append(prefix);
        sink.insert(name.value());
        sink.append(separator);
        render_value(sink, value);
        sink.append(suffix);
    }
}

#define VXATTRIBUTE_TRACE_HOOK(T)                                                                  \
    void ValueTypeTraits<T>::write_trace(std::ostream & stream, TraceFormatter const & formatter,  \
                                         unsigned int indent, T const * begin, T const * end) {    \
        TraceSink sink(stream, formatter, indent);                                                 \
        render_elements(sink, begin, end);                                                         \
        sink.flush();                                                                              \
    }

VXATTRIBUTE_TRACE_HOOK(bool)
VXATTRIBUTE_TRACE_HOOK(long long)
VXATTRIBUTE_TRACE_HOOK(double)
VXATTRIBUTE_TRACE_HOOK(std::string)
VXATTRIBUTE_TRACE_HOOK(vxcore::Uuid)
VXATTRIBUTE_TRACE_HOOK(vxuri::UriReference)
VXATTRIBUTE_TRACE_HOOK(vxcore::AbsoluteTime)
VXATTRIBUTE_TRACE_HOOK(vxcore::RelativeTime)
VXATTRIBUTE_TRACE_HOOK(vxcore::SimpleDateTime)
VXATTRIBUTE_TRACE_HOOK(BinaryValue)
VXATTRIBUTE_TRACE_HOOK(SerializedValue)
VXATTRIBUTE_TRACE_HOOK(SecuredValue)
VXATTRIBUTE_TRACE_HOOK(AttributeMap)
VXATTRIBUTE_TRACE_HOOK(ErrorInfoPtr)

#undef VXATTRIBUTE_TRACE_HOOK

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
