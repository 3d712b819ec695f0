#include "vxattribute/trace_formatter.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace {

using vxattribute::defaultTraceFormatter;
using vxattribute::TraceFormatter;
using vxcore::SourceString;
using ListParams = TraceFormatter::ListParams;
using Composer = TraceFormatter::Composer;

SourceString text(char const * literal) {
    return SourceString(literal, true);
}

std::string shown(SourceString const & value) {
    return std::string(value.view());
}

std::string shown(ListParams const & list) {
    return shown(list.prefix()) + '|' + shown(list.separator()) + '|' + shown(list.suffix()) + '|' +
           (list.show_for_scalar() ? "always" : "lists");
}

std::string shown(bool value) {
    return value ? "yes" : "no";
}

std::string shown(unsigned int value) {
    return std::to_string(value);
}

ListParams const newList(text("<"), text(";"), text(">"), false);

/// A setting: how it is read, its default, and a setter call with what it leads to.
struct Setting {
    std::function<std::string(TraceFormatter const &)> read;
    std::string byDefault;
    std::function<void(Composer &)> set;
    std::string changed;
};

template <typename Result, typename Value>
Setting setting(Result (TraceFormatter::*get)() const noexcept, char const * byDefault,
                Composer & (Composer::*set)(Value), Value value, char const * changed) {
    return {[get](TraceFormatter const & formatter) { return shown((formatter.*get)()); },
            byDefault, [set, value](Composer & composer) { (composer.*set)(value); }, changed};
}

#define TEXT(name, byDefault)                                                                      \
    setting<SourceString const &, SourceString>(&TraceFormatter::name, byDefault, &Composer::name, \
                                                text("new"), "new")
#define LIST(name, byDefault)                                                                      \
    setting<ListParams const &, ListParams>(&TraceFormatter::name, byDefault, &Composer::name,     \
                                            newList, "<|;|>|lists")
#define NUMBER(name, byDefault)                                                                    \
    setting<unsigned int, unsigned int>(&TraceFormatter::name, byDefault, &Composer::name, 7u, "7")

std::vector<Setting> const settings = {
    setting<bool, bool>(&TraceFormatter::show_type, "yes", &Composer::show_type, false, "no"),
    NUMBER(max_multivalue_count, "32"),
    NUMBER(multiline_length_threshold, "128"),
    NUMBER(max_string_len, "4096"),
    NUMBER(max_binary_value_dump_bytes, "256"),
    NUMBER(binary_value_dump_line_size, "32"),
    TEXT(line_prefix, "\n "),
    TEXT(indent, "  "),
    TEXT(error_info_null, "##NULL##"),
    LIST(list_default, "{|, |}|always"),
    LIST(list_map, "\n {|\n ,|\n }|always"),
    LIST(list_string_simple, "{|, |}|always"),
    LIST(list_string_multiline, "\n {|\n , |\n }|always"),
    LIST(list_binary_value_dump, "\n {|\n , |\n }|always"),
    LIST(list_error_info, "\n {|\n , |\n }|always"),
    TEXT(map_element_prefix, "\n'"),
    TEXT(map_name_value_separator, "' => "),
    TEXT(map_element_suffix, ""),
    TEXT(multiline_string_prefix, "\n  \""),
    TEXT(multiline_string_newline, "\"\n  \""),
    TEXT(multiline_string_suffix, "\""),
    TEXT(binary_value_dump_prefix, "\n  "),
    TEXT(binary_value_dump_newline, "\n  "),
    TEXT(binary_value_dump_suffix, ""),
    TEXT(error_info_line_prefix, "\n  "),
};

TEST(TraceFormatter, ASetterChangesItsSettingAloneAndLeavesTheBaseAsItWas) {
    for (std::size_t set = 0; set < settings.size(); ++set) {
        Composer composer(defaultTraceFormatter);
        settings[set].set(composer);
        TraceFormatter const changed = composer.compose();
        for (std::size_t i = 0; i < settings.size(); ++i) {
            EXPECT_EQ(settings[i].read(changed),
                      i == set ? settings[i].changed : settings[i].byDefault)
                << "setting " << i << " after setter " << set;
            EXPECT_EQ(settings[i].read(defaultTraceFormatter), settings[i].byDefault);
        }
    }
}

TEST(TraceFormatter, CopiesShareTheirSettings) {
    TraceFormatter const fresh;
    EXPECT_EQ(&fresh.line_prefix(), &defaultTraceFormatter.line_prefix());
    TraceFormatter const composed = Composer(fresh).show_type(false).indent(text("-")).compose();
    TraceFormatter copy = composed;
    EXPECT_EQ(&copy.indent(), &composed.indent());
    EXPECT_NE(&copy.indent(), &fresh.indent());
    TraceFormatter const next = Composer(copy).max_string_len(1).compose();
    EXPECT_FALSE(next.show_type());
    EXPECT_EQ(next.max_string_len(), 1u);
    copy = fresh;
    EXPECT_TRUE(copy.show_type());
    EXPECT_FALSE(composed.show_type());
}

TEST(TraceFormatter, AComposerSharesItsSettingsWithCopiesAndIsSpentByCompose) {
    Composer composer;
    Composer copy = composer;
    copy.max_string_len(9);
    EXPECT_EQ(composer.compose().max_string_len(), 9u);
    EXPECT_THROW(composer.show_type(true), std::logic_error);
    EXPECT_THROW(composer.compose(), std::logic_error);
}

TEST(TraceFormatter, ListParamsAreSetInAChainAndSwapped) {
    ListParams list = newList;
    list.prefix(text("a")).separator(text("b")).suffix(text("c")).show_for_scalar(true);
    ListParams other = newList;
    list.swap(other);
    EXPECT_EQ(shown(list), "<|;|>|lists");
    EXPECT_EQ(shown(other), "a|b|c|always");
}

TEST(RenderIndented, LineFeedsBecomeNewLinesAndReturnsBeforeThemGo) {
    TraceFormatter const formatter =
        Composer().line_prefix(text("\n#")).indent(text("\n.")).compose();

    struct Row {
        std::string text;
        std::string setting; // what the overload for texts of the settings writes
        std::string raw;     // what that for raw data writes
    };

    Row const rows[] = {
        {"", "", ""},
        {"plain", "plain", "plain"},
        {"return\r", "return\r", "return"},
        {"a\nb", "a\n#\n.\n.b", "a\n#\n.\n.b"},
        {"a\r\nb\r", "a\n#\n.\n.b", "a\n#\n.\n.b"},
        {"\r\r\n\n", "\r\n#\n.\n.\n#\n.\n.", "\r\n#\n.\n.\n#\n.\n."},
        {"a\rb\n", "a\rb\n#\n.\n.", "a\rb\n#\n.\n."},
    };
    for (auto const & [input, setting, raw] : rows) {
        std::ostringstream stream;
        std::ostringstream rawStream;
        formatter.render_indented(stream, 2, SourceString(input)) << "|";
        formatter.render_indented(rawStream, 2, input.data(),
                                  static_cast<unsigned int>(input.size()))
            << "|";
        EXPECT_EQ(stream.str(), setting + '|');
        EXPECT_EQ(rawStream.str(), raw + '|');
    }
    std::ostringstream stream;
    formatter.indented(stream, 0) << "|";
    formatter.indented(stream, 300);
    std::string expected = "\n#|\n#";
    for (int i = 0; i < 300; ++i) {
        expected += "\n.";
    }
    EXPECT_EQ(stream.str(), expected);
}

} // namespace
