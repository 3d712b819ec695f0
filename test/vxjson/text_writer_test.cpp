#include "scan.h"

#include "vxjson/text_writer.h"

#include <cstdlib>
#include <map>
#include <sstream>

namespace {

using namespace vxjson;

using Writing = TextWriter &;
using Text = std::string const &;

unsigned int size_of(Text text) {
    return static_cast<unsigned int>(text.size());
}

/// A call that takes a text, and the end of the error code for its misuse.
struct Call {
    char const * code;
    void (*make)(Writing, Text);
};

std::map<std::string, Call> const calls = {
    {"{", {"container.begin", [](Writing w, Text) { w.begin_object(); }}},
    {"}", {"container.end", [](Writing w, Text) { w.end_object(); }}},
    {"[", {"container.begin", [](Writing w, Text) { w.begin_array(); }}},
    {"]", {"container.end", [](Writing w, Text) { w.end_array(); }}},
    {"<", {"string", [](Writing w, Text) { w.begin_string(); }}},
    {">", {"string.end", [](Writing w, Text) { w.end_string(); }}},
    {"name", {"name", [](Writing w, Text t) { w.write_name(t.data(), size_of(t)); }}},
    {"string", {"string", [](Writing w, Text t) { w.write_string(t.data(), size_of(t)); }}},
    {"data", {"string.data", [](Writing w, Text t) { w.write_string_data(t.data(), size_of(t)); }}},
    {"number", {"number", [](Writing w, Text t) { w.write_number(t.data(), size_of(t)); }}},
    {"int", {"number", [](Writing w, Text t) { w.write_integer(std::stoll(t)); }}},
    {"uint", {"number", [](Writing w, Text t) { w.write_unsigned(std::stoull(t)); }}},
    {"double", {"number", [](Writing w, Text t) { w.write_double(std::strtod(t.c_str(), {})); }}},
    {"true", {"literal", [](Writing w, Text) { w.write_bool(true); }}},
    {"false", {"literal", [](Writing w, Text) { w.write_bool(false); }}},
    {"null", {"literal", [](Writing w, Text) { w.write_null(); }}},
    {"finish", {"", [](Writing w, Text) { w.finish(); }}},
};

/// Makes the calls of a line. Returns the failures, then the text.
std::string play(std::string const & script, TextWriter::Options const & options) {
    std::string text, failures;
    auto const attempt = [&failures](auto action) {
        try {
            action();
        } catch (vxcore::ErrorException const & e) {
            failures += std::string("!") + (e.info()->code().name() + 20) + ": " + e.what() + " ";
        }
    };
    attempt([&] {
        TextWriter writer(text, options);
        std::istringstream words(script);
        for (std::string word; words >> word;) {
            std::size_t const colon = std::min(word.find(':'), word.size() - 1);
            Call const & call = calls.at(word.substr(0, colon + (word[colon] == ':' ? 0 : 1)));
            attempt([&] { call.make(writer, vxtest::decode(word.substr(colon + 1))); });
        }
        writer.finish();
    });
    return failures + text;
}

TEST(TextWriter, WritesWhatTheTableTells) {
    int const count = vxtest::for_each_case(
        "vxjson/writer.txt",
        [](std::string const & text, std::string const & expected, std::string const & line) {
            std::istringstream words(line);
            std::string word;
            int first = 0, second = 0;
            words >> word >> word >> first >> second;
            TextWriter::Options options;
            options.indent = word == "indent" ? static_cast<unsigned int>(first) : 0;
            options.max_depth = word == "depth" ? static_cast<unsigned int>(first) : 256;
            options.validate_utf8 = word == "utf8";
            options.ascii_only = word == "ascii";
            options.min_exponent = word == "exponents" ? -first : options.min_exponent;
            options.max_exponent = word == "exponents" ? second : options.max_exponent;
            std::string const result = play(text, options);
            EXPECT_EQ(result.substr(0, result.find_last_not_of(' ') + 1), vxtest::decode(expected));
        });
    EXPECT_GT(count, 15);
}

TEST(TextWriter, RefusesEachCallThatIsOutOfPlaceAndWritesNothingOfIt) {
    std::string const values = " { [ < string number int uint double true false null ";
    for (auto const & [before, allowed, reason, after] :
         std::initializer_list<std::array<std::string, 4>>{
             {"", values, "the document has not begun", " null"},
             {"null", "", "the document is complete", ""},
             {"{ ", " name } ", "a name or the end of the object is due", " }"},
             {"{ name:x ", values, "the value of a name is due", " null }"},
             {"[ ", values + " ] ", "an element or the end of the array is due", " ]"},
             {"<", " data > ", "a string is open", " >"}}) {
        std::string const whole = play(before + after, {});
        for (auto const & [name, call] : calls) {
            if (allowed.find(" " + name + " ") == std::string::npos && name != "finish") {
                EXPECT_EQ(play(before + " " + name + ":1" + after, {}),
                          std::string("!unexpected.") + call.code +
                              ": A call of the JSON writer is out of place: " + reason + " " +
                              whole);
            }
        }
    }
}

TEST(TextWriter, TakesNothingAfterItsTargetFailed) {
    struct Target final : TextWriter::ITextTarget {
        void write_data(char const *, unsigned int) override { throw std::bad_alloc(); }
    } target;

    std::string const text(5000, 'x');
    for (auto const & [name, call] : calls) {
        TextWriter writer(target);
        EXPECT_THROW(writer.write_string(text.data(), 5000), std::bad_alloc);
        EXPECT_THROW(call.make(writer, "1"), vxcore::ErrorException) << name;
    }
}

TEST(TextWriter, EscapesAtAnyPlaceInTextsOfAnySize) {
    TextWriter::Options ascii;
    ascii.ascii_only = true;
    for (auto const & [special, escape, options] :
         std::initializer_list<std::tuple<std::string, std::string, TextWriter::Options>>{
             {"\"", "\\\"", {}},
             {"\\", "\\\\", {}},
             {"\x1F", "\\u001f", {}},
             {" \x7F\xFF", " \x7F\xFF", {}},
             {"\xC3\xA4", "\\u00e4", ascii}}) {
        std::string text, expected = "{";
        TextWriter writer(text, options);
        writer.begin_object();
        for (std::size_t size = 0; size < 300; size += size < 50 ? 1 : 50) {
            for (std::size_t at = 0; at <= size; ++at) {
                std::string const before(at, '!'), after(size - at, '~');
                std::string const name = before + special + after;
                writer.write_name(name.data(), size_of(name));
                writer.write_string(name.data(), size_of(name));
                std::string const escaped = '"' + before + escape + after + '"';
                expected += (expected == "{" ? "" : ",") + escaped + ':' + escaped;
            }
        }
        writer.end_object();
        writer.finish();
        EXPECT_EQ(text, expected + "}");
    }
}

TEST(TextWriter, HandsTextOnInLargePieces) {
    struct Target final : TextWriter::ITextTarget {
        void write_data(char const * data, unsigned int size) override {
            text.append(data, size);
            ++count;
        }

        std::string text;
        int count = 0;
    } target;

    TextWriter writer(target);
    writer.begin_array();
    std::string expected = "[";
    for (std::size_t size = 0; size < 6000; size += 7) {
        std::string const text(size, 'x');
        writer.write_string(text.data(), size_of(text));
        expected += (size == 0 ? "\"" : ",\"") + text + "\"";
    }
    writer.end_array();
    writer.finish();
    writer.finish();
    EXPECT_EQ(target.text, expected + "]");
    EXPECT_LT(target.count, 1200); // 2.5 MB
}

} // namespace
