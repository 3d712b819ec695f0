#pragma once

#include "vxattribute/trace_formatter.h"

namespace vxattribute::impl {

/// The settings of a TraceFormatter. A Composer sets them; after `compose()` they are shared and
/// immutable.
class TraceFormatterImpl final : public vxcore::RefCounted<vxcore::AtomicRefCount> {
  public:
    using SourceString = vxcore::SourceString;
    using ListParams = TraceFormatter::ListParams;

    TraceFormatterImpl() = default;
    TraceFormatterImpl(TraceFormatterImpl const &) = default;
    ~TraceFormatterImpl() override;

    static TraceFormatterImpl const & of(TraceFormatter const & formatter) noexcept {
        return static_cast<TraceFormatterImpl const &>(*formatter.m_settings);
    }

    bool show_type = true;
    unsigned int max_multivalue_count = 32;
    unsigned int multiline_length_threshold = 128;
    unsigned int max_string_len = 4096;
    unsigned int max_binary_value_dump_bytes = 256;
    unsigned int binary_value_dump_line_size = 32;
    SourceString line_prefix = literal("\n ");
    SourceString indent = literal("  ");
    SourceString error_info_null = literal("##NULL##");
    ListParams list_default = list("{", ", ", "}");
    ListParams list_map = list("\n {", "\n ,", "\n }");
    ListParams list_string_simple = list("{", ", ", "}");
    ListParams list_string_multiline = list("\n {", "\n , ", "\n }");
    ListParams list_binary_value_dump = list("\n {", "\n , ", "\n }");
    ListParams list_error_info = list("\n {", "\n , ", "\n }");
    SourceString map_element_prefix = literal("\n'");
    SourceString map_name_value_separator = literal("' => ");
    SourceString map_element_suffix;
    bool sorted_names = false;
    SourceString multiline_string_prefix = literal("\n  \"");
    SourceString multiline_string_newline = literal("\"\n  \"");
    SourceString multiline_string_suffix = literal("\"");
    SourceString binary_value_dump_prefix = literal("\n  ");
    SourceString binary_value_dump_newline = literal("\n  ");
    SourceString binary_value_dump_suffix;
    SourceString error_info_line_prefix = literal("\n  ");

  private:
    static SourceString literal(char const * text) { return SourceString(text, true); }

    static ListParams list(char const * prefix, char const * separator, char const * suffix) {
        return ListParams(literal(prefix), literal(separator), literal(suffix), true);
    }
};

/// The settings that default formatters share. Null only before load-time code has made them.
extern vxcore::RefCountPtr<TraceFormatterImpl const> const defaultTraceSettings;

} // namespace vxattribute::impl
