#include "vxattribute/trace_formatter.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

namespace {

using vxattribute::defaultTraceFormatter;
using vxattribute::TraceFormatter;
using vxcore::SourceString;
using Composer = TraceFormatter::Composer;

SourceString text(char const * literal) {
    return SourceString(literal, true);
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
        EXPECT_EQ(stream.str(), setting + "|" + raw + "|");
    }
    std::ostringstream stream;
    formatter.indented(stream, 0) << "|";
    formatter.indented(stream, 3);
    EXPECT_EQ(stream.str(), "\n#|\n#\n.\n.\n.");
}

} // namespace
