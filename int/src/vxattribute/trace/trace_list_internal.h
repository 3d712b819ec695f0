#pragma once

#include "vxattribute/element_types.h"
#include "vxattribute/trace/trace_sink_internal.h"

#include <type_traits>

/// Rendering of elements, values and maps into a sink, at the level of the sink. The function that
/// made the sink must flush it.
namespace vxattribute::impl {

/// Renders the elements [begin, end) of one value. Each type has an overload.
#define VX_ELEMENT_TYPE(number, Id, name, Type, ...)                                               \
    void render_elements(TraceSink & sink, Type const * begin, Type const * end);
#include "vxattribute/element_type_table.inc"
#undef VX_ELEMENT_TYPE

/// A value, as its `write_trace` writes it.
void render_value(TraceSink & sink, AttributeValue const & value);

/// The elements of a map, without a frame.
void render_map(TraceSink & sink, AttributeMapBase const & map);

/// Writes an element with the stream operator of its type.
struct DefaultTraceFunctor {
    template <typename T>
    void operator()(TraceSink & sink, T const & element) const {
        sink.stream() << element;
    }
};

/// Writes what comes before and after the elements of a list: the type, and the prefix and suffix
/// if `isFramed`.
void open_list(TraceSink & sink, ValueTypeId const & type, TraceFormatter::ListParams const & list,
               bool isFramed);
void close_list(TraceSink & sink, TraceFormatter::ListParams const & list, bool isFramed);

/// The largest number of elements of one value that are shown. For maps that are nested too deeply
/// it is 0, which bounds the recursion.
template <typename T>
unsigned int max_shown(TraceSink const & sink) {
    bool const isTooDeep = std::is_same_v<T, AttributeMap> && sink.depth() >= max_trace_depth;
    return isTooDeep ? 0 : sink.settings().max_multivalue_count;
}

/// Renders the elements [begin, end) of one value as a list.
///
/// @param writeElement  Called as `writeElement(sink, element)`.
template <typename T, typename Functor>
void render_list(TraceSink & sink, TraceFormatter::ListParams const & list, T const * begin,
                 T const * end, Functor const & writeElement) {
    bool const isFramed = list.show_for_scalar() || end - begin != 1;
    open_list(sink, ValueTypeTraits<T>::type(), list, isFramed);
    unsigned int budget = max_shown<T>(sink);
    for (T const * element = begin; element != end; ++element, --budget) {
        if (budget == 0) {
            sink.append_left_out(static_cast<std::size_t>(end - element));
            break;
        }
        if (element != begin) {
            sink.append_indented(list.separator());
        }
        writeElement(sink, *element);
    }
    close_list(sink, list, isFramed);
}

} // namespace vxattribute::impl
