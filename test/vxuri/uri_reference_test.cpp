#include "vxuri/uri_parse_data.h"
#include "vxuri/uri_reference.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using vxuri::UriReference;
using vxuri::impl::UriParseData;

std::string traced(UriReference const & reference) {
    return (std::ostringstream() << reference).str();
}

std::string traced(vxcore::StringTraceData const & data) {
    std::ostringstream stream;
    vxcore::StringTraceData::write_to_stream(stream, data);
    return stream.str();
}

TEST(UriReference, UndefinedAndEmptyDifferInTheTraceOnly) {
    UriReference const undefined;
    UriReference const empty = UriReference::parse("");
    EXPECT_TRUE(undefined.is_undefined());
    EXPECT_FALSE(empty.is_undefined());
    EXPECT_EQ(undefined, empty);
    EXPECT_EQ(undefined.hash(), 0u);
    EXPECT_EQ(traced(undefined), "<undefined>");
    EXPECT_EQ(traced(empty), "");
    EXPECT_EQ(UriReference().parse_data(), undefined.parse_data()); // shared
    EXPECT_EQ(UriReference::empty_reference().parse_data(), empty.parse_data());
    EXPECT_EQ(empty.parse_data()->parts, UriParseData::Parts{});
}

/// Returns the components between bars. "-" is one that is absent rather than empty.
std::string components(UriReference const & r) {
    auto const part = [](bool present, std::string_view text) {
        return std::string("|").append(present ? text : "-");
    };
    return part(r.has_scheme(), r.scheme()) + part(r.has_authority(), r.authority()) +
           part(true, r.host()) + part(true, r.port()) + part(true, r.path()) +
           part(r.has_query(), r.query()) + part(r.has_fragment(), r.fragment());
}

TEST(UriReference, EveryTextIsSplit) {
    struct Row {
        char const * text;
        char const * components;
        unsigned int pathEnd, querySize;
    };

    for (Row const & row :
         {Row{"http://u:p@host:80/a/b?q=1#f", "|http|u:p@host:80|host|80|/a/b|q=1|f", 22, 4},
          {"//", "|-|||||-|-", 2, 0},
          {"?", "|-|-|||||-", 0, 1},
          {"#", "|-|-||||-|", 0, 0},
          {"a?b?c#d?#e", "|-|-|||a|b?c|d?#e", 1, 4},
          {":a", "|-|-|||:a|-|-", 2, 0},
          {"s:////p", "|s||||//p|-|-", 7, 0},
          {"//[::1]:8/", "|-|[::1]:8|[::1]|8|/|-|-", 10, 0},
          {"//a@b@c:?q", "|-|a@b@c:|c|||q|-", 8, 2},
          {"file name\n%", "|-|-|||file name\n%|-|-", 11, 0}}) {
        UriReference const reference = UriReference::parse(row.text);
        UriParseData const & data = *reference.parse_data();
        EXPECT_EQ(traced(reference), row.text);
        EXPECT_EQ(components(reference), row.components);
        EXPECT_EQ(data.parts[0], 0u);
        EXPECT_EQ(data.parts[3], row.pathEnd) << row.text;
        EXPECT_EQ(data.parts[4], row.querySize) << row.text;
        EXPECT_EQ(traced(data.traceUri), std::string(row.text, row.pathEnd + row.querySize));
    }
}

TEST(UriReference, ComparesBytesButForTheCaseOfEscapes) {
    struct Row {
        std::string a, b;
        int order;
    };

    for (Row const & row : {Row{"a%2Fb", "a%2fb", 0},
                            {"A%2Fb", "a%2fb", 'A' - 'a'},
                            {"%2F", "/", '%' - '/'},
                            {"a%2", "a%2F", -1},
                            {"%fG", "%Fg", 'G' - 'g'},
                            {"%%FB", "%%fB", 0},
                            {"%%FB", "%%Fb", 'B' - 'b'},
                            {"\x80", "a", -128 - 'a'},
                            {"abc", "a", 2},
                            {"", "%", -1}}) {
        UriReference const a = UriReference::parse(row.a);
        UriReference const b = UriReference::parse(row.b);
        EXPECT_EQ(a.compare(b), row.order) << row.a << ' ' << row.b;
        EXPECT_EQ(b.compare(a), -row.order) << row.a << ' ' << row.b;
        EXPECT_EQ(a == b, row.order == 0) << row.a << ' ' << row.b;
    }
}

TEST(UriReference, HashesSignedBytesWithEscapesFolded) {
    EXPECT_EQ(UriReference::parse("a%2F").hash(), 13402u);
    EXPECT_EQ(UriReference::parse("a%2f").hash(), 13402u);
    EXPECT_EQ(UriReference::parse("%%FB").hash(), 6158u + 'B' - 'b');
    EXPECT_EQ(UriReference::parse("\xff").hash(), 4294967295u);
    EXPECT_EQ(UriReference::parse("\xC3\xA9%E").hash(), 4294957782u);
}

TEST(UriReference, StrictSyntaxIsTheGrammarToTheLetter) {
    for (char const * text :
         {"", "http://user:pw@example.org:8080/a/b;c?x=1&y=/?#frag/?", "//h:", "http://", "a+1-.:b",
          "./a:b", "/a//b", "%41", "//a%20b/", "//1.2.3.999",
          // addresses
          "//[::]", "//[::1]:80", "//[1:2:3:4:5:6:7:8]", "//[1:2:3:4:5:6:7::]",
          "//[::2:3:4:5:6:7:8]", "//[1:2:3:4:5:6:1.2.3.4]", "//[a::1.2.3.4]", "//[vF.a:b]"}) {
        EXPECT_TRUE(UriReference::parse(text).is_strict()) << text;
    }
    for (char const * text :
         {// characters, escapes, schemes, authorities
          " ", "%4", "%4g", "\xC3\xA4", "a#b#c", "1a:b", ":a", "//a@b@c", "//h:8a", "//a:b:1",
          "//[", "//[::1]a",
          // addresses
          "//[1:2:3:4:5:6:7]", "//[1:2:3:4:5:6:7:8:9]", "//[1:2:3:4:5:6:7::8]", "//[1::2::3]",
          "//[:::]", "//[1:]", "//[12345::]", "//[g::]", "//[1.2.3.4::]", "//[::1.2.3]",
          "//[::1.2.3.256]", "//[::1.2.3.04]", "//[::1%25eth0]", "//[1:2:3:4:5:6:7:1.2.3.4]",
          "//[v.a]", "//[vF.]"}) {
        EXPECT_FALSE(UriReference::parse(text).is_strict()) << text;
    }
}

TEST(UriParseData, WordsOfOthersNeverLeadBeyondTheText) {
    UriParseData::Parts words;
    words.fill(4294967294u);
    UriReference const reference(vxcore::make_ref_counted<UriParseData>("text", words));
    EXPECT_EQ(components(reference), "|text||||||");
    unsigned int size = 0;
    EXPECT_EQ(reference.parse_data()->traceUri.trace_data(size), reference.text().data());
    EXPECT_EQ(size, 4294967295u); // the sum overflows
    EXPECT_EQ(traced(reference.parse_data()->traceUri), "");
}

TEST(UriReference, IsNeverNull) {
    UriReference first = UriReference::parse("x:y");
    UriReference const second = std::move(first); // a copy
    EXPECT_EQ(first.text(), "x:y");
    EXPECT_EQ(second.parse_data(), first.parse_data());
}

} // namespace
