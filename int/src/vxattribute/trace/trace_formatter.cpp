#include "vxattribute/trace_formatter.h"

#include "vxattribute/trace/trace_formatter_internal.h"
#include "vxattribute/trace/trace_sink_internal.h"

#include <stdexcept>

namespace vxattribute {

namespace impl {

TraceFormatterImpl::~TraceFormatterImpl() = default;

namespace {

vxcore::RefCountPtr<TraceFormatterImpl const> default_settings() {
    // Load-time code of another library may call this before our own has run.
    return defaultTraceSettings ? defaultTraceSettings
                                : vxcore::make_ref_counted<TraceFormatterImpl const>();
}

} // namespace
} // namespace impl

TraceFormatter::TraceFormatter() : m_settings(impl::default_settings()) {}

TraceFormatter::Composer::Composer()
    : m_settings(vxcore::make_ref_counted<impl::TraceFormatterImpl>()) {}

TraceFormatter::Composer::Composer(TraceFormatter const & base)
    : m_settings(
          vxcore::make_ref_counted<impl::TraceFormatterImpl>(impl::TraceFormatterImpl::of(base))) {}

impl::TraceFormatterImpl & TraceFormatter::Composer::settings() {
    if (!m_settings) {
        throw std::logic_error("vxattribute::TraceFormatter::Composer: used after compose()");
    }
    return static_cast<impl::TraceFormatterImpl &>(*m_settings);
}

TraceFormatter TraceFormatter::Composer::compose() {
    // For its check: the settings belong to the formatter after the first call.
    settings();
    return TraceFormatter(std::move(m_settings));
}

// The accessor and the setter of each setting

#define VXATTRIBUTE_SETTING(Type, Result, name)                                                    \
    Result TraceFormatter::name() const noexcept {                                                 \
        return impl::TraceFormatterImpl::of(*this).name;                                           \
    }                                                                                              \
    TraceFormatter::Composer & TraceFormatter::Composer::name(Type value) {                        \
        settings().name = std::move(value);                                                        \
        return *this;                                                                              \
    }
#define VXATTRIBUTE_NUMBER(name) VXATTRIBUTE_SETTING(unsigned int, unsigned int, name)
#define VXATTRIBUTE_TEXT(name)                                                                     \
    VXATTRIBUTE_SETTING(vxcore::SourceString, vxcore::SourceString const &, name)
#define VXATTRIBUTE_LIST(name)                                                                     \
    VXATTRIBUTE_SETTING(ListParams, TraceFormatter::ListParams const &, name)

VXATTRIBUTE_SETTING(bool, bool, show_type)
VXATTRIBUTE_SETTING(bool, bool, sorted_names)
VXATTRIBUTE_NUMBER(max_multivalue_count)
VXATTRIBUTE_NUMBER(multiline_length_threshold)
VXATTRIBUTE_NUMBER(max_string_len)
VXATTRIBUTE_NUMBER(max_binary_value_dump_bytes)
VXATTRIBUTE_NUMBER(binary_value_dump_line_size)
VXATTRIBUTE_TEXT(line_prefix)
VXATTRIBUTE_TEXT(indent)
VXATTRIBUTE_TEXT(error_info_null)
VXATTRIBUTE_LIST(list_default)
VXATTRIBUTE_LIST(list_map)
VXATTRIBUTE_LIST(list_string_simple)
VXATTRIBUTE_LIST(list_string_multiline)
VXATTRIBUTE_LIST(list_binary_value_dump)
VXATTRIBUTE_LIST(list_error_info)
VXATTRIBUTE_TEXT(map_element_prefix)
VXATTRIBUTE_TEXT(map_name_value_separator)
VXATTRIBUTE_TEXT(map_element_suffix)
VXATTRIBUTE_TEXT(multiline_string_prefix)
VXATTRIBUTE_TEXT(multiline_string_newline)
VXATTRIBUTE_TEXT(multiline_string_suffix)
VXATTRIBUTE_TEXT(binary_value_dump_prefix)
VXATTRIBUTE_TEXT(binary_value_dump_newline)
VXATTRIBUTE_TEXT(binary_value_dump_suffix)
VXATTRIBUTE_TEXT(error_info_line_prefix)

#undef VXATTRIBUTE_LIST
#undef VXATTRIBUTE_TEXT
#undef VXATTRIBUTE_NUMBER
#undef VXATTRIBUTE_SETTING

// Rendering

std::ostream & TraceFormatter::indented(std::ostream & stream, unsigned int level) const {
    impl::TraceSink sink(stream, *this, level);
    sink.append_new_line();
    sink.flush();
    return stream;
}

std::ostream & TraceFormatter::render_indented(std::ostream & stream, unsigned int level,
                                               char const * data, unsigned int size) const {
    impl::TraceSink sink(stream, *this, level);
    sink.append_lines(std::string_view(data, size), [&sink] { sink.append_new_line(); });
    sink.flush();
    return stream;
}

std::ostream & TraceFormatter::render_indented(std::ostream & stream, unsigned int level,
                                               vxcore::SourceString const & text) const {
    impl::TraceSink sink(stream, *this, level);
    sink.append_indented(text);
    sink.flush();
    return stream;
}

} // namespace vxattribute
