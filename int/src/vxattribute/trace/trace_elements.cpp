// How the elements of each type but String and Binary are rendered.

#include "vxattribute/trace/text_stream_internal.h"
#include "vxattribute/trace/trace_list_internal.h"
#include "vxcore/streamers.h"

#include <algorithm>

namespace vxattribute::impl {

void open_list(TraceSink & sink, ValueTypeId const & type, TraceFormatter::ListParams const & list,
               bool isFramed) {
    if (sink.settings().show_type) {
        sink.append("[");
        sink.append(type.name());
        sink.append(": ");
    }
    if (isFramed) {
        sink.append_indented(list.prefix());
    }
}

void close_list(TraceSink & sink, TraceFormatter::ListParams const & list, bool isFramed) {
    if (isFramed) {
        sink.append_indented(list.suffix());
    }
    if (sink.settings().show_type) {
        sink.append("]");
    }
}

struct ValueTypeTraits<SerializedValue>::TraceFunctor {
    void operator()(TraceSink & sink, SerializedValue const & element) const {
        sink.append("<type='");
        sink.append(element.type());
        sink.append("', size=");
        sink.append_number(static_cast<unsigned long long>(element.size()));
        sink.append(">");
    }
};

namespace {

struct NumberTraceFunctor {
    template <typename Number>
    void operator()(TraceSink & sink, Number number) const {
        sink.insert_number(number);
    }
};

template <typename T, typename Functor>
void render_default_list(TraceSink & sink, T const * begin, T const * end,
                         Functor const & writeElement) {
    render_list(sink, sink.settings().list_default, begin, end, writeElement);
}

/// The text of an error with a line prefix before each line. Empty lines are left out.
void append_error(TraceSink & sink, vxcore::ErrorInfo const & error) {
    TextStream text;
    error.write_trace(text);
    std::string_view rest = text.view();
    while (!rest.empty()) {
        std::string_view const line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (!line.empty()) {
            sink.append_indented(sink.settings().error_info_line_prefix);
            sink.append(line);
        }
    }
}

} // namespace

void render_elements(TraceSink & sink, bool const * begin, bool const * end) {
    render_default_list(sink, begin, end, [](TraceSink & out, bool element) {
        // With `insert`, so that the width of the stream applies.
        out.insert(vxcore::streamers::Boolean(element).text());
    });
}

void render_elements(TraceSink & sink, long long const * begin, long long const * end) {
    render_default_list(sink, begin, end, NumberTraceFunctor());
}

void render_elements(TraceSink & sink, double const * begin, double const * end) {
    render_default_list(sink, begin, end, NumberTraceFunctor());
}

void render_elements(TraceSink & sink, vxcore::Uuid const * begin, vxcore::Uuid const * end) {
    render_default_list(sink, begin, end, DefaultTraceFunctor());
}

void render_elements(TraceSink & sink, vxuri::UriReference const * begin,
                     vxuri::UriReference const * end) {
    render_default_list(sink, begin, end, [](TraceSink & out, vxuri::UriReference const & element) {
        if (element.is_undefined()) {
            out.stream() << element;
        } else {
            out.insert(element.text()); // its stream operator writes the same but costs a flush
        }
    });
}

void render_elements(TraceSink & sink, vxcore::AbsoluteTime const * begin,
                     vxcore::AbsoluteTime const * end) {
    render_default_list(sink, begin, end, DefaultTraceFunctor());
}

void render_elements(TraceSink & sink, vxcore::RelativeTime const * begin,
                     vxcore::RelativeTime const * end) {
    render_default_list(sink, begin, end, DefaultTraceFunctor());
}

void render_elements(TraceSink & sink, vxcore::SimpleDateTime const * begin,
                     vxcore::SimpleDateTime const * end) {
    render_default_list(sink, begin, end, DefaultTraceFunctor());
}

void render_elements(TraceSink & sink, SerializedValue const * begin, SerializedValue const * end) {
    render_default_list(sink, begin, end, ValueTypeTraits<SerializedValue>::TraceFunctor());
}

void render_elements(TraceSink & sink, SecuredValue const * begin, SecuredValue const * end) {
    render_default_list(sink, begin, end, DefaultTraceFunctor());
}

void render_elements(TraceSink & sink, AttributeMap const * begin, AttributeMap const * end) {
    render_list(sink, sink.settings().list_map, begin, end,
                [](TraceSink & out, AttributeMap const & element) {
                    // No guard: after an exception nobody uses the sink again.
                    out.enter_level();
                    render_map(out, element);
                    out.leave_level();
                });
}

void render_elements(TraceSink & sink, ErrorInfoPtr const * begin, ErrorInfoPtr const * end) {
    render_list(sink, sink.settings().list_error_info, begin, end,
                [](TraceSink & out, ErrorInfoPtr const & element) {
                    if (element) {
                        append_error(out, *element);
                    } else {
                        out.append_indented(out.settings().error_info_line_prefix);
                        out.append(out.settings().error_info_null.view());
                    }
                });
}

} // namespace vxattribute::impl
