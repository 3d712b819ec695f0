#include "support/cases.h"
#include "support/grouping_locale.h"

#include "vxattribute/trace_formatter.h"
#include "vxattribute/value_forms.h"

#include <functional>
#include <iomanip>
#include <map>
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

TEST(Trace, ShowsReadsAndWritesValuesAsInTheTable) {
    std::map<std::string, std::function<void(Composer &, unsigned int)>> const setters = {
        {"show_type", &Composer::show_type},
        {"show_for_scalar",
         [list = defaultTraceFormatter.list_default()](Composer & composer, bool shows) mutable {
             composer.list_default(list.show_for_scalar(shows));
         }},
        {"max_multivalue_count", &Composer::max_multivalue_count},
        {"multiline_length_threshold", &Composer::multiline_length_threshold},
        {"max_string_len", &Composer::max_string_len},
        {"max_binary_value_dump_bytes", &Composer::max_binary_value_dump_bytes},
        {"binary_value_dump_line_size", &Composer::binary_value_dump_line_size}};
    auto const check = [&](std::string const & text, std::string const & shown, auto const & line) {
        Composer composer;
        std::istringstream settings(line);
        std::string word;
        for (unsigned int number = 0; settings >> word;) {
            if (word != "=") {
                settings >> number;
                setters.at(word)(composer, number);
            }
        }
        AttributeValue value;
        vxtest::read_text(text, value);
        EXPECT_EQ(vxtest::write_text(value), text);
        EXPECT_EQ(render(value, composer.compose()), vxtest::decode(shown)) << text;
    };
    EXPECT_GT(vxtest::for_each_case("vxattribute/values.txt", check), 45);
}

TEST(Trace, KeepsItsLimits) {
    EXPECT_EQ(render(AttributeValue(std::string(5000, 'x'))),
              "[String: {\"" + std::string(4096, 'x') + "\"...(+904)}]");
    EXPECT_EQ(render(AttributeValue(BinaryValue(257)),
                     Composer().binary_value_dump_line_size(300).compose()),
              "[Binary: \n  {\n   " + std::string(512, '0') + "...(+1)\n  }]");
    std::string all = "-1234567";
    for (int i = 0; i < 1000; ++i) {
        all += ", -1234567";
    }
    std::vector<long long> const many(1001, -1234567);
    EXPECT_EQ(render(make_list(std::span(many)), Composer().max_multivalue_count(~0u).compose()),
              "[Integer: {" + all + "}]");
}

TEST(Trace, MapsNestOneLevelDeeperThanTheirFrames) {
    AttributeMap const inner = make_map({{"x", 1}});
    EXPECT_EQ(render(AttributeMap()), "");
    AttributeMap const many = make_map({{"m", make_list<AttributeMap>({inner, inner})}});
    EXPECT_EQ(render(many, defaultTraceFormatter, 1),
              "\n   'm' => [AttributeMap: \n    {\n     'x' => [Integer: {1}]\n    ,\n     'x' => "
              "[Integer: {1}]\n    }]");
    std::string const longName(2000, 'n');
    EXPECT_EQ(render(make_map({{longName, {}}})), "\n '" + longName + "' => [Null]");
    EXPECT_EQ(render(inner, Composer().map_element_suffix(SourceString(";\n", true)).compose()),
              "\n 'x' => [Integer: {1}];\n ");
    EXPECT_EQ(render(AttributeValue("a\nb"), defaultTraceFormatter, 2),
              "[String: \n      {\n       \"a\"\n       \"b\"\n      }]");
}

TEST(Trace, ASuffixFollowsEachDump) {
    Composer composer;
    composer.max_binary_value_dump_bytes(1).binary_value_dump_suffix(SourceString("\nend", true));
    TraceFormatter const formatter = composer.compose();
    EXPECT_EQ(render(AttributeValue(BinaryValue(2)), formatter),
              "[Binary: \n  {\n   00...(+1)\n end\n  }]");
    EXPECT_EQ(render(AttributeValue(BinaryValue(1)), formatter),
              "[Binary: \n  {\n   00\n end\n  }]");
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

/// Accepts nine bytes and then no more.
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
