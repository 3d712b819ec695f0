#include "scan.h"
#include "support/allocation.h"

namespace {

using namespace vxjson;
using vxtest::scan;

struct Case {
    std::string text;
    std::string trace;
};

void expect_traces(std::vector<Case> const & cases, Tokenizer::Options const & options = {}) {
    for (Case const & row : cases) {
        EXPECT_EQ(scan(row.text, options), row.trace) << row.text;
    }
}

TEST(Tokenizer, CutsDocuments) {
    expect_traces({
        {"", "."},
        {" \t\r\n", "."},
        {"\xEF\xBB\xBF[]", "[]."},
        {"{\"a\" :\t[1,-2.5e+07 ,true,false\n,null]}",
         "{\"a\":[1 ,-2.5e+07 ,true ,false ,null ]}."},
        {"\"\"\"x\" 0", "\"\"\"x\"0 ."},
        {"[0,-0,10,0.0,1E5,1e-5,0e0]", "[0 ,-0 ,10 ,0.0 ,1E5 ,1e-5 ,0e0 ]."},
        {"}]::,", "}]::,."}, // order is for the reader
    });
}

TEST(Tokenizer, DecodesEscapes) {
    expect_traces({
        {R"("\"\\\/\b\f\n\r\t")", "\"\"\\/\b\f\n\r\t\"."},
        {R"("\u0041\u00e4\u20AC\uFFFF")", "\"A\xC3\xA4\xE2\x82\xAC\xEF\xBF\xBF\"."},
        {R"("\uD834\uDD1Ex\uDBFF\uDFFF")", "\"\xF0\x9D\x84\x9Ex\xF4\x8F\xBF\xBF\"."},
        {R"("\u0000")", std::string("\"\0\".", 4)},
    });
    // Escapes with runs between them that are joined, that are too long for it, and that do not fit
    // into the scratch area.
    std::string text = "\"", decoded = "\"";
    for (std::size_t size = 0; size < 100; ++size) {
        text += "\\n" + std::string(size, 'x');
        decoded += "\n" + std::string(size, 'x');
    }
    expect_traces({{text + "\"", decoded + "\"."}});
}

TEST(Tokenizer, FindsWhatEndsARunAtEveryPlace) {
    for (std::size_t size = 0; size < 50; ++size) {
        std::string const run(size, '\x7F');
        std::string const place = std::to_string(size + 2) + "]: Expected ";
        std::string const at = " @" + std::to_string(size + 1);
        expect_traces({
            {"\"" + run + "\"", "\"" + run + "\"."},
            {"\"" + run + "\\\\" + run + "\"", "\"" + run + "\\" + run + "\"."},
            {"\"" + run + "\x1F",
             "\"" + run + "! [line 1, pos " + place +
                 "an escape in place of a control character and found byte 0x1F" + at},
            {"\"" + run, "\"" + run + "! [line 1, pos " + place +
                             "the end of the string and found the end of the text" + at},
        });
    }
}

TEST(Tokenizer, RefusesWithPlaceAndExpectation) {
    std::string const end = "white space, a punctuator or the end and found ";
    std::string const what = "a value or a punctuator and found ";
    for (auto const & [text, place, message] : std::initializer_list<std::array<std::string, 3>>{
             {"[01]", "1, pos 3 @2", end + "'1'"},
             {"-", "1, pos 2 @1", "a digit and found the end of the text"},
             {"[-a]", "1, pos 3 @2", "a digit and found 'a'"},
             {"\n1.", "2, pos 3 @3", "a digit and found the end of the text"},
             {"1.e5", "1, pos 3 @2", "a digit and found 'e'"},
             {"1e+ ", "1, pos 4 @3", "a digit and found byte 0x20"},
             {"1\"", "1, pos 2 @1", end + "'\"'"},
             {"+1", "1, pos 1 @0", what + "'+'"},
             {"\r\n\n .5", "3, pos 2 @4", what + "'.'"},
             {"NaN", "1, pos 1 @0", what + "'N'"},
             {"trux", "1, pos 4 @3", "true and found 'x'"},
             {"nul", "1, pos 4 @3", "null and found the end of the text"},
             {"falsey", "1, pos 6 @5", end + "'y'"},
             {"null\"", "1, pos 5 @4", end + "'\"'"},
             {"'a'", "1, pos 1 @0", what + "'''"},
             {"/**/", "1, pos 1 @0", what + "'/'"},
             {"\x01", "1, pos 1 @0", what + "byte 0x01"},
             {"\xEF\xBB", "1, pos 1 @0", what + "byte 0xEF"},
             {"\"\\x\"", "1, pos 3 @2", "an escape and found 'x'"},
             {"\"\\", "1, pos 3 @2", "an escape and found the end of the text"},
             {"\"\\'\"", "1, pos 3 @2", "an escape and found '''"},
             {"\"\\u12G4\"", "1, pos 6 @5", "a hexadecimal digit and found 'G'"},
             {"\"\\uDC00\"", "1, pos 2 @1", "the first half of a surrogate pair and found '\\'"},
             {"\"\\uD800x\"", "1, pos 8 @7", "the second half of a surrogate pair and found 'x'"},
             {"\"\\uD800\\uD800\"", "1, pos 8 @7",
              "the second half of a surrogate pair and found '\\'"},
             {"\"\\uD800\\u\"", "1, pos 10 @9", "a hexadecimal digit and found '\"'"},
         }) {
        std::size_t const at = place.find(" @");
        std::string const trace = scan(text);
        EXPECT_EQ(trace.substr(trace.find('!')),
                  "! [line " + place.substr(0, at) + "]: Expected " + message + place.substr(at))
            << text;
    }
    // What is good comes first, however the text is cut.
    EXPECT_EQ(scan("\"ab\\n\\n\\q").substr(0, 6), "\"ab\n\n!");
}

TEST(Tokenizer, TakesMoreOnDemand) {
    Tokenizer::Options options;
    options.allow_comments = options.allow_unquoted_names = options.allow_single_quotes = true;
    expect_traces(
        {
            {"{a:1,_$9\xC3\xA4 :'it\\'s \"x\"',nulls:null,t:true}",
             "{<a>:1 ,<_$9\xC3\xA4>:\"it's \"x\"\",<nulls>:null ,<t>:true }."},
            {"// x\n[1/**/,/* * / ** \n **/2//\n]//", "[1 ,2 ]."},
            {"/*\n\n*/ #", "! [line 3, pos 4]: Expected a value or a punctuator and found '#' @7"},
            {"1/x", "1 ! [line 1, pos 3]: Expected '/' or '*' and found 'x' @2"},
            {"/*\n*", "! [line 2, pos 2]: Expected the end of the comment and found the end of "
                      "the text @4"},
            {"a-b", "<a! [line 1, pos 2]: Expected a name of letters, digits, '_' and '$' and "
                    "found '-' @1"},
        },
        options);
}

TEST(Tokenizer, ChecksUtf8OnDemand) {
    std::string const good = "\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"
                             "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF";
    Tokenizer::Options options;
    options.validate_utf8 = options.allow_unquoted_names = true;
    for (std::size_t before = 0; before < 20; ++before) {
        std::string const run(before, 'x');
        EXPECT_EQ(scan("\"" + run + good + run + "\"", options), "\"" + run + good + run + "\".");
        EXPECT_EQ(scan("x" + run + good, options), "<x" + run + good + ">.");
    }
    for (char const * const bad : {"\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80",
                                   "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80",
                                   "\xC3", "\xE2\x82", "\xF0\x9D\x84", "\xE2\x28\xA1"}) {
        std::string const text = "\"a\xC3\xA4" + std::string(bad) + "\"";
        EXPECT_EQ(scan(text), text + ".");
        std::string const trace = scan(text, options);
        EXPECT_EQ(trace.substr(0, 41), "\"a\xC3\xA4! [line 1, pos 5]: Expected a UTF-8 s") << bad;
        EXPECT_EQ(trace.substr(trace.size() - 3), " @4");
    }
}

TEST(Tokenizer, KeepsItsLimits) {
    std::string const brackets(100'000, '[');
    EXPECT_EQ(scan(brackets), std::string(256, '[') + "! [line 1, pos 257]: More than 256 objects "
                                                      "and arrays are open @256");
    EXPECT_EQ(scan(std::string(256, '{') + "}{").substr(256), "}{.");
    std::string const digits(65536, '7');
    EXPECT_EQ(scan("[" + digits + "]"), "[" + digits + " ].");
    EXPECT_EQ(scan(digits + "e"),
              "! [line 1, pos 65537]: A number is longer than 65536 bytes @65536");
    EXPECT_EQ(scan(std::string(1'000'000, '7')),
              "! [line 1, pos 65537]: A number is longer than 65536 bytes @65536");
}

TEST(Tokenizer, TellsPlacesAndRepeatsItsEnd) {
    std::string const text = "[1,\n \"\\u0041b\"]";
    Tokenizer::Options options;
    options.uri = vxuri::UriReference::parse("file:a");
    Tokenizer tokenizer(text.data(), text.size(), options);
    unsigned int const places[][3] = {{1, 1, 0},   {1, 1, 0},  {1, 2, 1},   {1, 3, 2},
                                      {2, 2, 5},   {2, 3, 6},  {2, 10, 13}, {2, 11, 14},
                                      {2, 12, 15}, {2, 12, 15}};
    SourcePosition position;
    for (auto const & place : places) {
        tokenizer.next();
        tokenizer.position(position);
        EXPECT_EQ(position.line, place[0]) << place[2];
        EXPECT_EQ(position.linePos, place[1]) << place[2];
        EXPECT_EQ(position.sourcePos, place[2]);
    }
    EXPECT_EQ(position.uri.text(), "file:a");
    EXPECT_EQ(tokenizer.next(), eToken_DocumentEnd);
}

TEST(Tokenizer, PassesOnWhatTheStreamRaises) {
    // In the middle of a number, a string, a comment and white space, all of which could end there.
    for (std::string const text : {"[12", "[\"ab", "//ab", "    "}) {
        vxtest::TextStream stream(text, text.size());
        Tokenizer::Options options;
        options.buffer_size = static_cast<unsigned int>(text.size());
        options.allow_comments = true;
        Tokenizer tokenizer(stream, options);
        std::string const trace = vxtest::trace(tokenizer);
        EXPECT_NE(trace.find("]: The text cannot be read further @" + std::to_string(text.size())),
                  trace.npos)
            << trace;
        EXPECT_EQ(tokenizer.next(), eToken_Error);
        vxcore::ErrorInfo::Ptr error;
        tokenizer.error(error);
        EXPECT_STREQ(error->code().name(), "error.vxjson.reader.tokenizer.stream");
        EXPECT_EQ(error->nested()->text(), "line is down");
    }
}

TEST(Tokenizer, MakesNoAllocationPerToken) {
    std::string text = "[";
    for (int i = 0; i < 1000; ++i) {
        text += "{\"name\\n\" : \"a text with an \\u00e4 in it\" , \"n\" : -12.5e3 }, null,\n";
    }
    vxtest::TextStream stream(text);
    Tokenizer tokenizer(stream);
    EXPECT_EQ(vxtest::count_allocations([&] {
                  while (tokenizer.next() != eToken_DocumentEnd) {
                  }
              }),
              0u);
}

} // namespace
