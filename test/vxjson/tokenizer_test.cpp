#include "scan.h"
#include "support/allocation.h"

namespace {

using namespace vxjson;
using vxtest::scan;

TEST(Tokenizer, CutsTextsAsTheTableTells) {
    EXPECT_EQ(scan(""), ".");
    int const count = vxtest::for_each_case(
        "vxjson/tokens.txt",
        [](std::string const & text, std::string const & expected, std::string const & words) {
            Tokenizer::Options options;
            options.allow_comments = words.find("comments") != words.npos;
            options.allow_unquoted_names = words.find("names") != words.npos;
            options.allow_single_quotes = words.find("quotes") != words.npos;
            options.validate_utf8 = words.find("utf8") != words.npos;
            EXPECT_EQ(scan(vxtest::decode(text), options), vxtest::decode(expected)) << text;
        });
    EXPECT_GT(count, 40);
}

TEST(Tokenizer, FindsWhatEndsARunAtEveryPlace) {
    Tokenizer::Options utf8;
    utf8.validate_utf8 = true;
    std::string const letters = "\x7F\xC3\xA4\xF0\x9D\x84\x9E";
    for (std::size_t size = 0; size < 50; ++size) {
        std::string const run(size, '\x7F');
        EXPECT_EQ(scan("\"" + run + "\\\\" + run + letters + "\"", utf8),
                  "\"" + run + "\\" + run + letters + "\".");
        std::string const failure = "\"" + run + "! [line 1, pos " + std::to_string(size + 2);
        std::string const at = " @" + std::to_string(size + 1);
        EXPECT_EQ(scan("\"" + run), failure +
                                        "]: Expected the end of the string and found the end "
                                        "of the text" +
                                        at);
        EXPECT_EQ(scan("\"" + run + "\x1F"),
                  failure +
                      "]: Expected an escape in place of a control character and found byte "
                      "0x1F" +
                      at);
    }
    // Runs between escapes: short ones are joined, some are too long for that, some no longer fit.
    std::string text = "\"", decoded = "\"";
    for (std::size_t size = 0; size < 100; ++size) {
        text += "\\n" + std::string(size, 'x');
        decoded += "\n" + std::string(size, 'x');
    }
    EXPECT_EQ(scan(text + "\""), decoded + "\".");
}

TEST(Tokenizer, ChecksUtf8OnDemandOnly) {
    Tokenizer::Options options;
    options.validate_utf8 = true;
    for (char const * const bad : {"\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80",
                                   "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80",
                                   "\xC3", "\xE2\x82", "\xF0\x9D\x84", "\xE2\x28\xA1"}) {
        std::string const text = "\"a\xC3\xA4" + std::string(bad) + "\"";
        EXPECT_EQ(scan(text), text + ".");
        EXPECT_EQ(scan(text, options).find("! [line 1, pos 5]: Expected a UTF-8 sequence"), 4u);
    }
}

TEST(Tokenizer, KeepsItsLimits) {
    EXPECT_EQ(scan("]" + std::string(100'000, '[')),
              "]" + std::string(256, '[') +
                  "! [line 1, pos 258]: More than 256 objects and arrays are open @257");
    EXPECT_EQ(scan(std::string(256, '{') + "}{").substr(256), "}{.");
    std::string const digits(65536, '7');
    EXPECT_EQ(scan("[" + digits + "]"), "[" + digits + " ].");
    for (std::string const & text : {digits + "e", digits + "7 ", std::string(1'000'000, '7')}) {
        EXPECT_EQ(scan(text), "! [line 1, pos 65537]: A number is longer than 65536 bytes @65536");
    }
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
    // The stream fails in a number, a string, a comment and white space, all of which could end
    // there.
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
    std::string text;
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
