// How String and Binary elements are rendered: both are cut at a limit and may take several lines.

#include "vxattribute/trace/trace_list_internal.h"
#include "vxcore/streamers.h"

#include <algorithm>

namespace vxattribute::impl {

namespace {

/// True when each string is written on lines of its own. The size of the first is ignored: a single
/// long string is easy to read after its name.
bool is_multiline(std::string const * begin, std::string const * end, unsigned int threshold) {
    return std::any_of(begin, end, [begin, threshold](std::string const & element) {
        return (&element != begin && element.size() >= threshold) ||
               element.find('\n') != std::string::npos;
    });
}

/// Passes the bytes of a string up to the limit to `writeShown`, then marks the cut if there is
/// one.
template <typename Write>
void append_cut(TraceSink & sink, std::string const & text, Write writeShown) {
    unsigned int const limit = sink.settings().max_string_len;
    std::size_t const shown = text.size() <= limit ? text.size() : vxcore::utf8_cut(text, limit);
    writeShown(std::string_view(text).substr(0, shown));
    if (shown < text.size()) {
        sink.append_left_out(text.size() - shown);
    }
}

void append_simple_string(TraceSink & sink, std::string const & text) {
    append_cut(sink, text, [&sink](std::string_view shown) {
        sink.append("\"");
        sink.append(shown);
        sink.append("\"");
    });
}

void append_multiline_string(TraceSink & sink, std::string const & text) {
    append_cut(sink, text, [&sink](std::string_view shown) {
        TraceFormatterImpl const & settings = sink.settings();
        sink.append_indented(settings.multiline_string_prefix);
        sink.append_lines(shown, [&] { sink.append_indented(settings.multiline_string_newline); });
        sink.append_indented(settings.multiline_string_suffix);
    });
}

void append_size(TraceSink & sink, BinaryValue const & value) {
    sink.append("<size=");
    sink.append_number(static_cast<unsigned long long>(value.size()));
    sink.append(">");
}

void append_dump(TraceSink & sink, BinaryValue const & value) {
    TraceFormatterImpl const & settings = sink.settings();
    sink.append_indented(settings.binary_value_dump_prefix);
    unsigned int const shown = std::min(settings.max_binary_value_dump_bytes, value.size());
    for (unsigned int pos = 0; pos < shown;) {
        if (pos != 0) {
            sink.append_indented(settings.binary_value_dump_newline);
        }
        unsigned int const size = std::min(settings.binary_value_dump_line_size, shown - pos);
        sink.append_hex(value.data() + pos, size);
        pos += size;
    }
    if (shown < value.size()) {
        sink.append_left_out(value.size() - shown);
    }
    sink.append_indented(settings.binary_value_dump_suffix);
}

} // namespace

void render_elements(TraceSink & sink, std::string const * begin, std::string const * end) {
    TraceFormatterImpl const & settings = sink.settings();
    if (is_multiline(begin, end, settings.multiline_length_threshold)) {
        render_list(sink, settings.list_string_multiline, begin, end, append_multiline_string);
    } else {
        render_list(sink, settings.list_string_simple, begin, end, append_simple_string);
    }
}

void render_elements(TraceSink & sink, BinaryValue const * begin, BinaryValue const * end) {
    TraceFormatterImpl const & settings = sink.settings();
    if (settings.max_binary_value_dump_bytes > 0 && settings.binary_value_dump_line_size > 0) {
        render_list(sink, settings.list_binary_value_dump, begin, end, append_dump);
    } else {
        render_list(sink, settings.list_default, begin, end, append_size);
    }
}

} // namespace vxattribute::impl
