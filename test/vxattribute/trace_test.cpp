#include "support/grouping_locale.h"

#include "vxattribute/trace_formatter.h"
#include "vxattribute/vxattribute.h"
#include "vxcore/error_composer.h"
#include "vxserialize/memory_list.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <limits>
#include <sstream>
#include <stdexcept>

namespace {

using namespace vxattribute;
using vxcore::SourceString;
using Composer = TraceFormatter::Composer;

template <typename ValueOrMap>
std::string render(ValueOrMap const & what,
                   TraceFormatter const & formatter = defaultTraceFormatter,
                   unsigned int level = 0) {
    std::ostringstream stream;
    what.write_trace(stream, formatter, level);
    return stream.str();
}

AttributeValue strings(std::initializer_list<std::string> elements) {
    return make_list<std::string>(elements);
}

struct Row {
    AttributeValue value;
    std::string text;
};

void expect_rendered(std::initializer_list<Row> rows,
                     TraceFormatter const & formatter = defaultTraceFormatter) {
    for (Row const & row : rows) {
        EXPECT_EQ(render(row.value, formatter), row.text);
    }
}

TEST(Trace, EveryTypeHasItsForm) {
    using vxuri::UriReference;
    double const infinity = std::numeric_limits<double>::infinity();
    impl::ErrorInfoPtr const error =
        vxcore::ErrorComposer("\none\r\n\n{@n}").create(error::vxattribute_query, {});
    expect_rendered({
        {{}, "[Null]"},
        {make_list<bool>({true, false}), "[Boolean: {true, false}]"},
        {make_list<long long>({1, -2, 3}), "[Integer: {1, -2, 3}]"},
        {AttributeValue(ValueTypeId::typeInteger), "[Integer: {}]"},
        {make_list<double>({1.5, -0.0, 1e100, 1234567, 0.1 + 0.2, 100, -infinity}),
         "[Double: {1.5, -0, 1e+100, 1.23457e+06, 0.3, 100, -inf}]"},
        {strings({"a \"b\"\t", "", "\r"}), "[String: {\"a \"b\"\t\", \"\", \"\r\"}]"},
        {vxcore::Uuid({1}), "[UUID: {01000000-0000-0000-0000-000000000000}]"},
        {make_list<UriReference>(
             {UriReference(), UriReference::parse(""), UriReference::parse("http://a/b#c")}),
         "[URI: {<undefined>, , http://a/b#c}]"},
        {vxcore::AbsoluteTime(0), "[AbsoluteTime: {1970-01-01T00:00:00Z}]"},
        {vxcore::RelativeTime(15'000'000), "[RelativeTime: {PT1.5S}]"},
        {vxcore::SimpleDateTime(0), "[SimpleDateTime: {1970-01-01T00:00:00}]"},
        {SerializedValue("kind", vxserialize::MemoryList::create("1234", 4)),
         "[Serialized: {<type='kind', size=4>}]"},
        {make_list<impl::ErrorInfoPtr>({nullptr, error}),
         "[ErrorInfo: \n  {\n   ##NULL##\n  , \n   error.vxattribute.query: \n   one\r\n"
         "   {@n}\n  }]"},
    });
}

TEST(Trace, FramesAndTypeNamesCanBeLeftOut) {
    TraceFormatter::ListParams list = defaultTraceFormatter.list_default();
    TraceFormatter const bare = Composer().list_default(list.show_for_scalar(false)).compose();
    AttributeValue const two = make_list<long long>({1, 2}), none(ValueTypeId::typeInteger);
    expect_rendered({{5, "[Integer: 5]"}, {two, "[Integer: {1, 2}]"}, {none, "[Integer: {}]"}},
                    bare);
    expect_rendered({{5, "5"}, {two, "{1, 2}"}, {{}, "[Null]"}},
                    Composer(bare).show_type(false).compose());
}

TEST(Trace, LongListsAreCutInsideTheirFrame) {
    AttributeValue const three = make_list<long long>({1, 2, 3});
    expect_rendered({{three, "[Integer: {1, 2...(+1)}]"}},
                    Composer().max_multivalue_count(2).compose());
    std::string all = "-1234567";
    for (int i = 0; i < 1000; ++i) {
        all += ", -1234567";
    }
    std::vector<long long> const many(1001, -1234567);
    expect_rendered({{make_list(std::span(many)), "[Integer: {" + all + "}]"}},
                    Composer().max_multivalue_count(~0u).compose());
    expect_rendered({{three, "[Integer: {...(+3)}]"},
                     {AttributeValue(ValueTypeId::typeInteger), "[Integer: {}]"},
                     {make_map({{"x", 1}}), "[AttributeMap: \n  {...(+1)\n  }]"}},
                    Composer().max_multivalue_count(0).compose());
}

TEST(Trace, StringsGetLinesOfTheirOwnWhenOneIsLongOrHasLines) {
    TraceFormatter const formatter = Composer().multiline_length_threshold(4).compose();
    auto const lines = [](std::string const & inside) {
        return "[String: \n  {\n   " + inside + "\n  }]";
    };
    expect_rendered(
        {
            {"a\r\n\r\nb\r", lines("\"a\"\n   \"\"\n   \"b\"")},
            {strings({"a", "b\n"}), lines("\"a\"\n  , \n   \"b\"\n   \"\"")},
            {strings({"four", "abc"}), "[String: {\"four\", \"abc\"}]"},
            {strings({"ab\r", "four"}), lines("\"ab\"\n  , \n   \"four\"")},
        },
        formatter);
    std::string const below(127, 'x'), threshold(128, 'x');
    expect_rendered({{strings({"a", below}), "[String: {\"a\", \"" + below + "\"}]"},
                     {strings({"a", threshold}), lines("\"a\"\n  , \n   \"" + threshold + '"')}});
    EXPECT_EQ(render(AttributeValue("a\nb"), formatter, 2),
              "[String: \n      {\n       \"a\"\n       \"b\"\n      }]");
}

TEST(Trace, StringsAreCutBetweenCharactersWithTheMarkBehindTheQuote) {
    expect_rendered(
        {{std::string(5000, 'x'), "[String: {\"" + std::string(4096, 'x') + "\"...(+904)}]"}});
    expect_rendered(
        {
            {"ab\xC3\xA4", "[String: {\"ab\xC3\xA4\"}]"},
            {"abc\xC3\xA4", "[String: {\"abc\"...(+2)}]"},
            {"abcd\xC3\xA4", "[String: {\"abcd\"...(+2)}]"},
            {"\x80\x80\x80\x80\x80", "[String: {\"\"...(+5)}]"},
            {"abc\r\nde", "[String: \n  {\n   \"abc\"...(+3)\n  }]"},
        },
        Composer().max_string_len(4).compose());
    expect_rendered({{"abc", "[String: {\"\"...(+3)}]"}, {"", "[String: {\"\"}]"}},
                    Composer().max_string_len(0).compose());
}

TEST(Trace, BinaryValuesAreDumpedInLines) {
    unsigned char const data[] = {0x00, 0x7f, 0x80, 0xff};
    expect_rendered(
        {{make_list<BinaryValue>({BinaryValue(data, 4), BinaryValue()}),
          "[Binary: \n  {\n   007f80ff\n  , \n   \n  }]"},
         {BinaryValue(33), "[Binary: \n  {\n   " + std::string(64, '0') + "\n   00\n  }]"}});
    expect_rendered(
        {{BinaryValue(257), "[Binary: \n  {\n   " + std::string(512, '0') + "...(+1)\n  }]"}},
        Composer().binary_value_dump_line_size(300).compose());
    Composer custom;
    custom.max_binary_value_dump_bytes(3).binary_value_dump_line_size(2);
    custom.binary_value_dump_suffix(SourceString("\nend", true));
    expect_rendered({{BinaryValue(data, 4), "[Binary: \n  {\n   007f\n   80...(+1)\n end\n  }]"},
                     {BinaryValue(data, 3), "[Binary: \n  {\n   007f\n   80\n end\n  }]"}},
                    custom.compose());
    for (TraceFormatter const & off : {Composer().max_binary_value_dump_bytes(0).compose(),
                                       Composer().binary_value_dump_line_size(0).compose()}) {
        expect_rendered({{BinaryValue(1234), "[Binary: {<size=1234>}]"}}, off);
    }
}

TEST(Trace, MapsNestOneLevelDeeperThanTheirFrames) {
    AttributeMap const inner = make_map({{"x", 1}});
    EXPECT_EQ(render(AttributeMap()), "");
    EXPECT_EQ(render(make_map({{"inner", inner}})),
              "\n 'inner' => [AttributeMap: \n  {\n   'x' => [Integer: {1}]\n  }]");
    AttributeMap const many = make_map({{"m", make_list<AttributeMap>({inner, inner})}});
    EXPECT_EQ(render(many, defaultTraceFormatter, 1),
              "\n   'm' => [AttributeMap: \n    {\n     'x' => [Integer: {1}]\n    ,\n     'x' => "
              "[Integer: {1}]\n    }]");
    std::string const longName(2000, 'n');
    EXPECT_EQ(render(make_map({{longName, {}}})), "\n '" + longName + "' => [Null]");
    EXPECT_EQ(render(inner, Composer().map_element_suffix(SourceString(";\n", true)).compose()),
              "\n 'x' => [Integer: {1}];\n ");
}

TEST(Trace, TheFormWithAPrefixStartsInnerLinesWithIt) {
    auto const rendered = [](AttributeMap const & map, char const * prefix) {
        std::ostringstream stream;
        map.write_trace(stream, prefix, " ; ");
        return stream.str();
    };
    AttributeMap const nested = make_map({{"m", make_map({{"x", "a\nb"}})}});
    EXPECT_EQ(rendered(nested, "\n>"),
              "\n>'m' => [AttributeMap: \n> {\n>  x' => [String: \n>   {\n>    \"a\"\n>    \"b\"\n>"
              "   }]\n> }]");
    EXPECT_EQ(rendered(nested, ""),
              "'m' => [AttributeMap:  {x' => [String:  {  \"a\"  \"b\" }] }]");
    AttributeName const a("a"), b("b");
    EXPECT_EQ(rendered(make_map({{a, 1}, {b, 1}}), "-"),
              a < b ? "-'a' => [Integer: {1}] ; -'b' => [Integer: {1}]"
                    : "-'b' => [Integer: {1}] ; -'a' => [Integer: {1}]");
}

TEST(TraceStream, ElementsFollowTheStreamAndCountsDoNot) {
    std::vector<long long> const many(2000);
    AttributeValue const doubles = make_list<double>({12345.25, 0.5});

    struct {
        void (*prepare)(std::ostream &);
        std::string number;
        std::string doubles;
    } const cases[] = {
        {[](auto &) {}, "12345", "12345.2, 0.5"},
        {[](auto & s) { s << std::hex << std::showbase; }, "0x3039", "12345.2, 0.5"},
        {[](auto & s) { s << std::fixed; }, "12345", "12345.250000, 0.500000"},
        {[](auto & s) { s << std::setprecision(8); }, "12345", "12345.25, 0.5"},
        {[](auto & s) { s.imbue(vxtest::grouping_locale()); }, "12.345", "12.345,2, 0,5"},
    };

    for (auto const & row : cases) {
        std::ostringstream stream;
        row.prepare(stream);
        make_map({{"n", 12345}}).write_trace(stream, defaultTraceFormatter, 0);
        doubles.write_trace(stream, defaultTraceFormatter, 0);
        TraceFormatter const none = Composer().max_multivalue_count(0).compose();
        make_list(std::span(many)).write_trace(stream, none, 0);
        EXPECT_EQ(stream.str(), "\n 'n' => [Integer: {" + row.number + "}][Double: {" +
                                    row.doubles + "}][Integer: {...(+2000)}]");
    }
}

TEST(TraceStream, AWidthPadsTheFirstThingInserted) {
    std::ostringstream stream;
    stream << std::setfill('*') << std::left << std::setw(6);
    make_list<long long>({1, 2}).write_trace(stream, defaultTraceFormatter, 0);
    stream << std::setw(6);
    AttributeValue(true).write_trace(stream, defaultTraceFormatter, 0);
    stream << std::setw(6);
    make_map({{"x", 1}}).write_trace(stream, defaultTraceFormatter, 0);
    EXPECT_EQ(stream.str(),
              "[Integer: {1*****, 2}][Boolean: {true**}]\n 'x*****' => [Integer: {1}]");
}

/// Takes nine bytes and then no more.
struct SmallBuffer final : std::streambuf {
    SmallBuffer() { setp(bytes, bytes + sizeof bytes); }

    char bytes[9] = {};
};

TEST(TraceStream, ABufferThatIsFullMakesTheStreamBad) {
    AttributeMap const map = make_map({{"name", 12345}});
    SmallBuffer full;
    std::ostream stream(&full);
    map.write_trace(stream, defaultTraceFormatter, 0);
    EXPECT_TRUE(stream.bad());
    EXPECT_EQ(std::string(full.bytes, 9), "\n 'name' ");

    SmallBuffer unused;
    std::ostream failed(&unused);
    failed.setstate(std::ios_base::failbit);
    map.write_trace(failed, defaultTraceFormatter, 0);
    EXPECT_EQ(unused.bytes[0], '\0');

    std::ostream raising(&full);
    raising.exceptions(std::ios_base::badbit);
    EXPECT_THROW(map.write_trace(raising, defaultTraceFormatter, 0), std::ios_base::failure);
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
    TraceFormatter const formatter = Composer()
                                         .line_prefix(SourceString("\n#", true))
                                         .indent(SourceString("\n.", true))
                                         .compose();

    std::string const longText(5000, 'x'); // more than is gathered for one write

    struct {
        std::string text;
        std::string setting; // what the overload for texts of the settings writes
        std::string raw;     // what that for raw data writes
    } const rows[] = {
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
