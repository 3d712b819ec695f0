#include "vxattribute/trace_formatter.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

namespace {

using vxattribute::defaultTraceFormatter;
using vxattribute::TraceFormatter;
using vxcore::SourceString;
using ListParams = TraceFormatter::ListParams;
using Composer = TraceFormatter::Composer;

SourceString text(char const * literal) {
    return SourceString(literal, true);
}

ListParams list(char const * prefix, bool showForScalar = false) {
    ListParams params(text("?"), text("?"), text("?"), !showForScalar);
    params.prefix(text(prefix)).separator(text(";")).suffix(text(">"));
    return params.show_for_scalar(showForScalar);
}

std::ostream & operator<<(std::ostream & stream, SourceString const & value) {
    return stream << value.view();
}

std::ostream & operator<<(std::ostream & stream, ListParams const & params) {
    return stream << params.prefix() << '_' << params.separator() << '_' << params.suffix() << '_'
                  << params.show_for_scalar();
}

std::string joined(auto const &... settings) {
    std::ostringstream stream;
    ((stream << settings << '|'), ...);
    return stream.str();
}

/// All settings in their order.
std::string dump(TraceFormatter const & f) {
    return joined(f.show_type(), f.max_multivalue_count(), f.multiline_length_threshold(),
                  f.max_string_len(), f.max_binary_value_dump_bytes(),
                  f.binary_value_dump_line_size(), f.line_prefix(), f.indent(), f.error_info_null(),
                  f.list_default(), f.list_map(), f.list_string_simple(), f.list_string_multiline(),
                  f.list_binary_value_dump(), f.list_error_info(), f.map_element_prefix(),
                  f.map_name_value_separator(), f.map_element_suffix(), f.multiline_string_prefix(),
                  f.multiline_string_newline(), f.multiline_string_suffix(),
                  f.binary_value_dump_prefix(), f.binary_value_dump_newline(),
                  f.binary_value_dump_suffix(), f.error_info_line_prefix());
}

std::string const defaults =
    "1|32|128|4096|256|32|\n |  |##NULL##|{_, _}_1|\n {_\n ,_\n }_1|{_, _}_1|\n {_\n , _\n }_1|"
    "\n {_\n , _\n }_1|\n {_\n , _\n }_1|\n'|' => ||\n  \"|\"\n  \"|\"|\n  |\n  ||\n  |";

TEST(TraceFormatter, EachSetterChangesItsOwnSettingOfACopy) {
    Composer composer(defaultTraceFormatter);
    composer.show_type(false).max_multivalue_count(2).multiline_length_threshold(3);
    composer.max_string_len(4).max_binary_value_dump_bytes(5).binary_value_dump_line_size(6);
    composer.line_prefix(text("a")).indent(text("b")).error_info_null(text("c"));
    composer.list_default(list("d")).list_map(list("e")).list_string_simple(list("f"));
    composer.list_string_multiline(list("g", true)).list_binary_value_dump(list("h"));
    composer.list_error_info(list("i")).map_element_prefix(text("j"));
    composer.map_name_value_separator(text("k")).map_element_suffix(text("l"));
    composer.multiline_string_prefix(text("m")).multiline_string_newline(text("n"));
    composer.multiline_string_suffix(text("o")).binary_value_dump_prefix(text("p"));
    composer.binary_value_dump_newline(text("q")).binary_value_dump_suffix(text("r"));
    TraceFormatter const all = composer.error_info_line_prefix(text("s")).compose();
    EXPECT_EQ(dump(all), "0|2|3|4|5|6|a|b|c|d_;_>_0|e_;_>_0|f_;_>_0|g_;_>_1|h_;_>_0|i_;_>_0|"
                         "j|k|l|m|n|o|p|q|r|s|");
    EXPECT_EQ(dump(defaultTraceFormatter), defaults);
    EXPECT_EQ(dump(Composer().compose()), defaults);
}

TEST(TraceFormatter, CopiesShareTheirSettingsAndAComposerIsSpentByCompose) {
    EXPECT_EQ(&TraceFormatter().line_prefix(), &defaultTraceFormatter.line_prefix());
    Composer composer;
    Composer copy = composer;
    copy.max_string_len(9);
    TraceFormatter const composed = composer.compose();
    EXPECT_EQ(composed.max_string_len(), 9u);
    EXPECT_EQ(&TraceFormatter(composed).indent(), &composed.indent());
    EXPECT_NE(&composed.indent(), &defaultTraceFormatter.indent());
    EXPECT_THROW(composer.show_type(true), std::logic_error);
    EXPECT_THROW(composer.compose(), std::logic_error);
}

TEST(RenderIndented, LineFeedsBecomeNewLinesAndReturnsBeforeThemGo) {
    TraceFormatter const formatter =
        Composer().line_prefix(text("\n#")).indent(text("\n.")).compose();

    struct Row {
        std::string text;
        std::string setting; // what the overload for texts of the settings writes
        std::string raw;     // what that for raw data writes
    };

    std::string const longText(5000, 'x'); // more than is gathered for one write
    Row const rows[] = {
        {"return\r", "return\r", "return"},
        {"a\r\nb\r", "a\n#\n.\n.b", "a\n#\n.\n.b"},
        {"\r\r\n\n", "\r\n#\n.\n.\n#\n.\n.", "\r\n#\n.\n.\n#\n.\n."},
        {longText + '\r', longText + '\r', longText},
    };
    for (auto const & [input, setting, raw] : rows) {
        std::ostringstream stream;
        auto const size = static_cast<unsigned int>(input.size());
        formatter.render_indented(stream, 2, SourceString(input)) << "|";
        formatter.render_indented(stream, 2, input.data(), size) << "|";
        EXPECT_EQ(stream.str(), joined(setting, raw));
    }
    std::ostringstream stream;
    formatter.indented(stream, 0) << "|";
    formatter.indented(stream, 3);
    EXPECT_EQ(stream.str(), "\n#|\n#\n.\n.\n.");
}

} // namespace
