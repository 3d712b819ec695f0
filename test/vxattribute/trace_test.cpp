#include "vxattribute/trace_formatter.h"
#include "vxattribute/vxattribute.h"
#include "vxserialize/memory_list.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <limits>
#include <locale>
#include <pthread.h>
#include <sstream>

namespace {

using namespace vxattribute;
using vxcore::SourceString;
using Composer = TraceFormatter::Composer;
using Strings = std::vector<std::string>;

std::string render(AttributeValue const & value,
                   TraceFormatter const & formatter = defaultTraceFormatter,
                   unsigned int level = 0) {
    std::ostringstream stream;
    value.write_trace(stream, formatter, level);
    return stream.str();
}

std::string render_map(AttributeMap const & map, unsigned int level = 0) {
    std::ostringstream stream;
    map.write_trace(stream, defaultTraceFormatter, level);
    return stream.str();
}

AttributeValue strings(Strings const & elements) {
    return make_list(std::span<std::string const>(elements));
}

AttributeValue integers(unsigned int count) {
    return make_list(std::span<long long const>(std::vector<long long>(count, 5)));
}

AttributeValue bytes(unsigned int count) {
    return BinaryValue(count);
}

std::string repeat(std::string_view text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) {
        result += text;
    }
    return result;
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

/// An error whose own text has empty lines and carriage returns.
class OddError final : public vxcore::ErrorInfo {
  public:
    OddError()
        : ErrorInfo(SourceString("error.odd", true), SourceString(), vxcore::ErrorParams(),
                    vxcore::SourceLocation(), nullptr) {}

    void write_trace(std::ostream & stream) const override { stream << "\none\r\n\n" << 1234; }
};

TEST(Trace, EveryTypeHasItsForm) {
    vxcore::Uuid uuid;
    ASSERT_TRUE(vxcore::Uuid::parse("00112233-4455-6677-8899-aabbccddeeff", uuid));
    auto const payload = vxserialize::MemoryList::create("1234", 4);
    auto const error = vxcore::ErrorInfo::create(
        error::vxattribute_query, SourceString("no\n\nport", true), vxcore::ErrorParams(),
        vxcore::SourceLocation("f()", "f.cpp", 1234));
    expect_rendered({
        {{}, "[Null]"},
        {make_list<bool>({true, false}), "[Boolean: {true, false}]"},
        {make_list<long long>({1, -2, 3}), "[Integer: {1, -2, 3}]"},
        {std::numeric_limits<long long>::min(), "[Integer: {-9223372036854775808}]"},
        {AttributeValue(ValueTypeId::typeInteger), "[Integer: {}]"},
        {make_list<double>({1.5, -0.0, 1e100, 1234567, 0.1 + 0.2, 100}),
         "[Double: {1.5, -0, 1e+100, 1.23457e+06, 0.3, 100}]"},
        {strings({"a \"b\"\t", "", "\r"}), "[String: {\"a \"b\"\t\", \"\", \"\r\"}]"},
        {uuid, "[UUID: {00112233-4455-6677-8899-aabbccddeeff}]"},
        {make_list<vxuri::UriReference>({vxuri::UriReference(), vxuri::UriReference::parse(""),
                                         vxuri::UriReference::parse("http://a/b#c")}),
         "[URI: {<undefined>, , http://a/b#c}]"},
        {vxcore::AbsoluteTime(0), "[AbsoluteTime: {1970-01-01T00:00:00Z}]"},
        {vxcore::RelativeTime(15'000'000), "[RelativeTime: {PT1.5S}]"},
        {vxcore::SimpleDateTime(0), "[SimpleDateTime: {1970-01-01T00:00:00}]"},
        {SerializedValue("kind", payload), "[Serialized: {<type='kind', size=4>}]"},
        {SerializedValue(), "[Serialized: {<type='', size=0>}]"},
        {make_list<impl::ErrorInfoPtr>({nullptr, error}),
         "[ErrorInfo: \n  {\n   ##NULL##\n  , \n   error.vxattribute.query: no\n   port\n"
         "     at f() (f.cpp:1234)\n  }]"},
        {impl::ErrorInfoPtr(new OddError), "[ErrorInfo: \n  {\n   one\r\n   1234\n  }]"},
    });
}

TEST(Trace, FramesAndTypeNamesCanBeLeftOut) {
    TraceFormatter const bare =
        Composer()
            .list_default(TraceFormatter::ListParams(defaultTraceFormatter.list_default())
                              .show_for_scalar(false))
            .compose();
    AttributeValue const two = make_list<long long>({1, 2});
    expect_rendered({{5, "[Integer: 5]"},
                     {two, "[Integer: {1, 2}]"},
                     {AttributeValue(ValueTypeId::typeInteger), "[Integer: {}]"}},
                    bare);
    expect_rendered({{5, "5"}, {two, "{1, 2}"}, {{}, "[Null]"}},
                    Composer(bare).show_type(false).compose());
}

TEST(Trace, LongListsAreCutInsideTheirFrame) {
    TraceFormatter const none = Composer().max_multivalue_count(0).compose();
    EXPECT_EQ(render(integers(32)), "[Integer: {" + repeat("5, ", 31) + "5}]");
    EXPECT_EQ(render(integers(33)), "[Integer: {" + repeat("5, ", 31) + "5...(+1)}]");
    expect_rendered({{integers(1234), "[Integer: {...(+1234)}]"},
                     {AttributeValue(ValueTypeId::typeInteger), "[Integer: {}]"},
                     {make_map({{"x", 1}}), "[AttributeMap: \n  {...(+1)\n  }]"}},
                    none);
}

TEST(Trace, StringsGetLinesOfTheirOwnWhenOneIsLongOrHasLines) {
    std::string const long1000(1000, 'x');
    std::string const just(128, 'y');
    std::string const below(127, 'z');
    auto const lines = [](std::string const & inside) {
        return "[String: \n  {\n   " + inside + "\n  }]";
    };
    expect_rendered({
        {"a\nb", lines("\"a\"\n   \"b\"")},
        {"a\r\n\r\nb\r", lines("\"a\"\n   \"\"\n   \"b\"")},
        {strings({"a", "b\n"}), lines("\"a\"\n  , \n   \"b\"\n   \"\"")},
        {strings({long1000, "abc"}), "[String: {\"" + long1000 + "\", \"abc\"}]"},
        {strings({"a\r", long1000}), lines("\"a\"\n  , \n   \"" + long1000 + "\"")},
        {strings({"a", just}), lines("\"a\"\n  , \n   \"" + just + "\"")},
        {strings({"a", below}), "[String: {\"a\", \"" + below + "\"}]"},
    });
    EXPECT_EQ(render("a\nb", defaultTraceFormatter, 2),
              "[String: \n      {\n       \"a\"\n       \"b\"\n      }]");
}

TEST(Trace, StringsAreCutBetweenCharactersWithTheMarkBehindTheQuote) {
    std::string const full(4096, 'x');
    std::string const cut(4095, 'x');
    expect_rendered({
        {full, "[String: {\"" + full + "\"}]"},
        {full + std::string(904, 'x'), "[String: {\"" + full + "\"...(+904)}]"},
        {full + "\xC3\xA4", "[String: {\"" + full + "\"...(+2)}]"},
        {cut + "\xC3\xA4", "[String: {\"" + cut + "\"...(+2)}]"},
        // looked for beyond the cut as well
        {full + "\n", "[String: \n  {\n   \"" + full + "\"...(+1)\n  }]"},
    });
    expect_rendered({{"abc", "[String: {\"\"...(+3)}]"}, {"", "[String: {\"\"}]"}},
                    Composer().max_string_len(0).compose());
    expect_rendered({{"a\r\nbc", "[String: \n  {\n   \"a\"...(+3)\n  }]"},
                     {"\x80\x80\x80", "[String: {\"\"...(+3)}]"}},
                    Composer().max_string_len(2).compose());
}

TEST(Trace, BinaryValuesAreDumpedInLines) {
    std::string const line = "\n   " + repeat("00", 32);
    unsigned char const data[] = {0x00, 0x7f, 0x80, 0xff};
    expect_rendered({
        {bytes(256), "[Binary: \n  {" + repeat(line, 8) + "\n  }]"},
        {bytes(300), "[Binary: \n  {" + repeat(line, 8) + "...(+44)\n  }]"},
        {bytes(33), "[Binary: \n  {" + line + "\n   00\n  }]"},
        {make_list<BinaryValue>({BinaryValue(data, 4), BinaryValue()}),
         "[Binary: \n  {\n   007f80ff\n  , \n   \n  }]"},
    });
    // The mark stands before the suffix, the line feed in the suffix is no text of its own.
    Composer custom;
    custom.max_binary_value_dump_bytes(3).binary_value_dump_line_size(2);
    custom.binary_value_dump_suffix(SourceString("\nend", true));
    expect_rendered({{BinaryValue(data, 4), "[Binary: \n  {\n   007f\n   80...(+1)\n end\n  }]"}},
                    custom.compose());
    for (TraceFormatter const & off : {Composer().max_binary_value_dump_bytes(0).compose(),
                                       Composer().binary_value_dump_line_size(0).compose()}) {
        expect_rendered({{bytes(1234), "[Binary: {<size=1234>}]"}}, off);
    }
    // All on one line, longer than what is gathered at a time.
    expect_rendered(
        {{bytes(3000), "[Binary: \n  {\n   " + repeat("00", 3000) + "\n  }]"}},
        Composer().max_binary_value_dump_bytes(~0u).binary_value_dump_line_size(~0u).compose());
}

TEST(Trace, MapsNestOneLevelDeeperThanTheirFrames) {
    AttributeMap const inner = make_map({{"x", 1}});
    EXPECT_EQ(render_map(AttributeMap()), "");
    EXPECT_EQ(render_map(make_map({{"count", 5}})), "\n 'count' => [Integer: {5}]");
    EXPECT_EQ(render_map(make_map({{"inner", inner}})),
              "\n 'inner' => [AttributeMap: \n  {\n   'x' => [Integer: {1}]\n  }]");
    EXPECT_EQ(
        render_map(make_map({{"list", make_list<AttributeMap>({inner, inner})}}), 1),
        "\n   'list' => [AttributeMap: \n    {\n     'x' => [Integer: {1}]\n    ,\n     'x' => "
        "[Integer: {1}]\n    }]");
    std::string const longName(500, 'n');
    EXPECT_EQ(render_map(make_map({{longName, "a\nb"}})),
              "\n '" + longName + "' => [String: \n  {\n   \"a\"\n   \"b\"\n  }]");
    std::ostringstream stream;
    make_map({{"x", 1}})
        .write_trace(stream, Composer().map_element_suffix(SourceString(";\n", true)).compose(), 0);
    EXPECT_EQ(stream.str(), "\n 'x' => [Integer: {1}];\n ");
}

TEST(Trace, TheFormWithAPrefixStartsInnerLinesWithIt) {
    auto const rendered = [](AttributeMap const & map, char const * prefix) {
        std::ostringstream stream;
        map.write_trace(stream, prefix, " ; ");
        return stream.str();
    };
    AttributeMap const nested = make_map({{"m", make_map({{"x", "a\nb"}})}});
    EXPECT_EQ(rendered(AttributeMap(), "- "), "");
    EXPECT_EQ(rendered(nested, "\n>"),
              "\n>'m' => [AttributeMap: \n> {\n>  x' => [String: \n>   {\n>    \"a\"\n>    \"b\"\n>"
              "   }]\n> }]");
    EXPECT_EQ(rendered(nested, ""),
              "'m' => [AttributeMap:  {x' => [String:  {  \"a\"  \"b\" }] }]");
    AttributeName const first("first");
    AttributeName const second("second");
    std::string const a = "-'first' => [Integer: {1}]";
    std::string const b = "-'second' => [Integer: {2}]";
    EXPECT_EQ(rendered(make_map({{first, 1}, {second, 2}}), "-"),
              first < second ? a + " ; " + b : b + " ; " + a);
}

/// Groups digits by three and has a decimal comma.
struct GroupingPunctuation : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }

    char do_decimal_point() const override { return ','; }

    std::string do_grouping() const override { return "\3"; }
};

TEST(TraceStream, ElementsFollowTheStreamAndCountsDoNot) {
    AttributeMap const map = make_map(
        {{"m", make_map({{"n", integers(40)}, {"n", make_list<long long>({12345, -1})}})}});
    AttributeValue const many = integers(2032);
    AttributeValue const doubles = make_list<double>({12345.25, 0.5});
    std::locale const grouping(std::locale::classic(), new GroupingPunctuation);

    struct Case {
        std::function<void(std::ostream &)> prepare;
        std::string inMap;
        std::string mark;
        std::string doubles;
    };

    Case const cases[] = {
        {[](std::ostream &) {}, "12345, -1", "...(+2000)", "12345.2, 0.5"},
        {[](std::ostream & s) { s << std::hex << std::showbase << std::uppercase; },
         "0X3039, 0XFFFFFFFFFFFFFFFF", "...(+2000)", "12345.2, 0.5"},
        {[](std::ostream & s) { s << std::showpos; }, "+12345, -1", "...(+2000)", "+12345.2, +0.5"},
        {[](std::ostream & s) { s << std::fixed << std::setprecision(3); }, "12345, -1",
         "...(+2000)", "12345.250, 0.500"},
        {[](std::ostream & s) { s << std::setprecision(8); }, "12345, -1", "...(+2000)",
         "12345.25, 0.5"},
        {[&](std::ostream & s) { s.imbue(grouping); }, "12.345, -1", "...(+2000)", "12.345,2, 0,5"},
    };
    for (Case const & row : cases) {
        std::ostringstream stream;
        row.prepare(stream);
        map.write_trace(stream, defaultTraceFormatter, 0);
        EXPECT_EQ(stream.str(),
                  "\n 'm' => [AttributeMap: \n  {\n   'n' => [Integer: {" + row.inMap + "}]\n  }]");
        stream.str("");
        many.write_trace(stream, defaultTraceFormatter, 0);
        EXPECT_NE(stream.str().find(row.mark + "}"), std::string::npos) << stream.str();
        stream.str("");
        doubles.write_trace(stream, defaultTraceFormatter, 0);
        EXPECT_EQ(stream.str(), "[Double: {" + row.doubles + "}]");
    }
}

TEST(TraceStream, AWidthPadsTheFirstThingInserted) {
    auto const padded = [](auto const & what) {
        std::ostringstream stream;
        stream << std::setfill('*') << std::left << std::setw(6);
        what.write_trace(stream, defaultTraceFormatter, 0);
        EXPECT_EQ(stream.width(), 0);
        return stream.str();
    };
    EXPECT_EQ(padded(AttributeValue(make_list<long long>({1, 2}))), "[Integer: {1*****, 2}]");
    EXPECT_EQ(padded(AttributeValue(true)), "[Boolean: {true**}]");
    EXPECT_EQ(padded(make_map({{"x", 1}})), "\n 'x*****' => [Integer: {1}]");
}

/// Takes a few bytes and then no more.
class FullBuffer final : public std::streambuf {
  public:
    explicit FullBuffer(std::size_t capacity) { setp(m_bytes, m_bytes + capacity); }

    std::string text() const { return std::string(pbase(), pptr()); }

  private:
    char m_bytes[16];
};

TEST(TraceStream, ABufferThatIsFullMakesTheStreamBad) {
    FullBuffer buffer(9);
    std::ostream stream(&buffer);
    AttributeMap const map = make_map({{"name", 12345}});
    map.write_trace(stream, defaultTraceFormatter, 0);
    EXPECT_TRUE(stream.bad());
    EXPECT_EQ(buffer.text(), "\n 'name' ");

    FullBuffer unused(9);
    std::ostream failed(&unused);
    failed.setstate(std::ios_base::failbit);
    map.write_trace(failed, defaultTraceFormatter, 0);
    EXPECT_EQ(unused.text(), "");

    FullBuffer other(9);
    std::ostream raising(&other);
    raising.exceptions(std::ios_base::badbit);
    EXPECT_THROW(map.write_trace(raising, defaultTraceFormatter, 0), std::ios_base::failure);
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(__OPTIMIZE__)
constexpr bool hasSmallFrames = false;
#elif defined(__has_feature)
constexpr bool hasSmallFrames =
    !__has_feature(address_sanitizer) && !__has_feature(thread_sanitizer);
#else
constexpr bool hasSmallFrames = true;
#endif

TEST(TraceStream, MapsAsDeepAsAStreamMayHoldFitInASmallStack) {
    if (!hasSmallFrames) {
        GTEST_SKIP() << "frames are larger in this build";
    }
    AttributeMap map = make_map({{"x", make_list<double>({1e-5, 2e300})}, {"y", "a\nb"}});
    for (int depth = 1; depth < 256; ++depth) {
        map = make_map({{"m", map}});
    }
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
    pthread_t thread;
    auto const run = [](void * argument) -> void * {
        std::string const text = render_map(*static_cast<AttributeMap *>(argument), 1);
        EXPECT_NE(text.find("[Double: {1e-05, 2e+300}]"), std::string::npos);
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &map), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

} // namespace
