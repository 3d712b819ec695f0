#include "support/expect_error.h"

#include "vxjson/text_writer.h"

#include <climits>
#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <string_view>

namespace {

using namespace vxjson;
using vxtest::expect_error;
using Options = TextWriter::Options;

unsigned int size_of(std::string_view text) {
    return static_cast<unsigned int>(text.size());
}

/// A call that tests write as one character, with the end of the code of its misuse.
struct Call {
    char const * code;
    void (*make)(TextWriter &);
};

std::map<char, Call> const calls = {
    {'{', {"container.begin", [](TextWriter & w) { w.begin_object(); }}},
    {'}', {"container.end", [](TextWriter & w) { w.end_object(); }}},
    {'[', {"container.begin", [](TextWriter & w) { w.begin_array(); }}},
    {']', {"container.end", [](TextWriter & w) { w.end_array(); }}},
    {'N', {"name", [](TextWriter & w) { w.write_name("\"", 1); }}},
    {'<', {"string", [](TextWriter & w) { w.begin_string(); }}},
    {'-', {"string.data", [](TextWriter & w) { w.write_string_data("d", 1); }}},
    {'>', {"string.end", [](TextWriter & w) { w.end_string(); }}},
    {'s', {"string", [](TextWriter & w) { w.write_string("s\n", 2); }}},
    {'#', {"number", [](TextWriter & w) { w.write_number("1e5", 3); }}},
    {'i', {"number", [](TextWriter & w) { w.write_integer(LLONG_MIN); }}},
    {'u', {"number", [](TextWriter & w) { w.write_unsigned(ULLONG_MAX); }}},
    {'d', {"number", [](TextWriter & w) { w.write_double(-0.0); }}},
    {'t', {"literal", [](TextWriter & w) { w.write_bool(true); }}},
    {'f', {"literal", [](TextWriter & w) { w.write_bool(false); }}},
    {'n', {"literal", [](TextWriter & w) { w.write_null(); }}},
};

void run(TextWriter & writer, std::string_view script) {
    for (char const call : script) {
        calls.at(call).make(writer);
    }
}

std::string write(std::string_view script, Options const & options = {}) {
    std::string text;
    TextWriter writer(text, options);
    run(writer, script);
    writer.finish();
    return text;
}

vxcore::ErrorCode code_of(std::string const & end) {
    static std::string name;
    name = "error.vxjson.writer." + end; // read before the next call
    return vxcore::ErrorCode(name.c_str(), true);
}

TEST(TextWriter, LaysOutCompactAndIndented) {
    char const * const script = "{N[iu#dtfn]N{}N[[]s]N<-->}";
    EXPECT_EQ(write(script), "{\"\\\"\":[-9223372036854775808,18446744073709551615,1e5,-0.0,true,"
                             "false,null],\"\\\"\":{},\"\\\"\":[[],\"s\\n\"],\"\\\"\":\"dd\"}");
    Options options;
    options.indent = 2;
    EXPECT_EQ(
        write("{N[tf]N{}N[[]s]N<-->}", options),
        "{\n  \"\\\"\": [\n    true,\n    false\n  ],\n  \"\\\"\": {},\n  \"\\\"\": [\n    [],\n"
        "    \"s\\n\"\n  ],\n  \"\\\"\": \"dd\"\n}");
    options.indent = 50;
    EXPECT_EQ(write("[n]", options), "[\n" + std::string(50, ' ') + "null\n]");
}

std::string write_double(double value, Options const & options = {}) {
    std::string text;
    TextWriter writer(text, options);
    writer.write_double(value);
    writer.finish();
    return text;
}

TEST(TextWriter, WritesDoublesAsShortAsTheyReadBack) {
    std::pair<double, char const *> const numbers[] = {
        {0.0, "0.0"},
        {-1.5, "-1.5"},
        {0.1, "0.1"},
        {123456.0, "123456.0"},
        {100.25, "100.25"},
        {1e20, "100000000000000000000.0"},
        {1e21, "1e+21"},
        {1.25e-6, "0.00000125"},
        {1e-7, "1e-07"},
        {9007199254740993.0, "9007199254740992.0"},
        {1.7976931348623157e308, "1.7976931348623157e+308"},
        {4.9e-324, "5e-324"}};
    for (auto const & [value, text] : numbers) {
        EXPECT_EQ(write_double(value), text);
    }
    Options wide;
    wide.min_exponent = -324, wide.max_exponent = 308;
    EXPECT_EQ(write_double(-4.9e-324, wide), "-0." + std::string(323, '0') + "5");
    EXPECT_EQ(write_double(-1e308, wide), "-1" + std::string(308, '0') + ".0");
    double const infinity = std::numeric_limits<double>::infinity();
    expect_error([] { write_double(std::nan("")); }, code_of("unsupported.value.nan"),
                 "JSON has no number NaN");
    expect_error([&] { write_double(-infinity); }, code_of("unsupported.value.inf"),
                 "JSON has no number -infinity");
    wide.max_exponent = 309;
    expect_error([&] { write_double(1, wide); }, code_of("config.invalidExponent"),
                 "Limits of exponents must be -324 to 0 and 0 to 308, and are -324 and 309");
}

/// A string in two pieces.
std::string write_pieces(std::string_view text, std::size_t cut, Options const & options = {}) {
    std::string result;
    TextWriter writer(result, options);
    writer.begin_string();
    writer.write_string_data(text.data(), size_of(text.substr(0, cut)));
    writer.write_string_data(text.data() + cut, size_of(text.substr(cut)));
    writer.end_string();
    writer.finish();
    return result;
}

TEST(TextWriter, EscapesWhatMustBeOrAll) {
    std::string const text("\"\\/\b\f\n\r\t\x01\x1F\x7F\0\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E", 21);
    std::string const plain = "\"\\\"\\\\/\\b\\f\\n\\r\\t\\u0001\\u001f\x7F\\u0000";
    Options ascii;
    ascii.ascii_only = true;
    for (std::size_t cut = 0; cut <= text.size(); ++cut) {
        EXPECT_EQ(write_pieces(text, cut), plain + "\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E\"");
        EXPECT_EQ(write_pieces(text, cut, ascii), plain + "\\u00e4\\u20ac\\ud834\\udd1e\"") << cut;
    }
}

TEST(TextWriter, ChecksUtf8OnDemandBeforeItWrites) {
    std::string const bad = "abc\xE2\x82x\xE2\x82\xAC";
    EXPECT_EQ(write_pieces(bad, 4), "\"" + bad + "\"");
    for (bool const ascii : {true, false}) {
        Options options;
        (ascii ? options.ascii_only : options.validate_utf8) = true;
        std::string text;
        TextWriter writer(text, options);
        auto const refuse = [](auto action, int at) {
            std::string const message = "Ill-formed UTF-8 at byte " + std::to_string(at);
            expect_error(action, code_of("unexpected.character"), message.c_str());
        };
        auto const data = [&writer](std::string_view piece) {
            writer.write_string_data(piece.data(), size_of(piece));
        };
        run(writer, "{");
        refuse([&] { writer.write_name(bad.data(), size_of(bad)); }, 3);
        run(writer, "N");
        refuse([&] { writer.write_string(bad.data(), size_of(bad)); }, 3);
        run(writer, "<");
        refuse([&] { data(bad); }, 3);
        data("\xE2"), data(""), data("\x82");
        refuse([&] { data("\xAC\xFF"); }, 1);
        refuse([&] { data("x"); }, 0);
        refuse([&] { writer.end_string(); }, 0);
        data("\xAC"); // it goes on as if nothing had been
        run(writer, ">}");
        writer.finish();
        EXPECT_EQ(text, ascii ? "{\"\\\"\":\"\\u20ac\"}" : "{\"\\\"\":\"\xE2\x82\xAC\"}");
    }
}

TEST(TextWriter, RefusesEachCallThatIsOutOfPlaceAndWritesNothingOfIt) {
    struct Place {
        std::string before;
        std::string allowed;
        std::string reason;
        std::string after;
        std::string text;
    };

    std::string const values = "{[<s#iudtfn";
    for (Place const & place : std::initializer_list<Place>{
             {"", values, "the document has not begun", "n", "null"},
             {"n", "", "the document is complete", "", "null"},
             {"{", "N}", "a name or the end of the object is due", "}", "{}"},
             {"{N", values, "the value of a name is due", "n}", "{\"\\\"\":null}"},
             {"[", values + "]", "an element or the end of the array is due", "]", "[]"},
             {"<", "->", "a string is open", ">", "\"\""}}) {
        for (auto const & [mark, call] : calls) {
            std::string text;
            TextWriter writer(text);
            run(writer, place.before);
            if (place.allowed.find(mark) != std::string::npos) {
                EXPECT_NO_THROW(call.make(writer)) << place.reason << mark;
                continue;
            }
            std::string const message =
                "A call of the JSON writer is out of place: " + place.reason;
            Call const & wrong = call;
            expect_error([&] { wrong.make(writer); },
                         code_of(std::string("unexpected.") + wrong.code), message.c_str());
            run(writer, place.after);
            writer.finish();
            EXPECT_EQ(text, place.text);
        }
    }
}

TEST(TextWriter, RefusesWhatIsNotWhole) {
    std::pair<char const *, char const *> const scripts[] = {
        {"[{}", ".container"}, {"[<", ".string"}, {"", ""}};
    for (auto const & [script, code] : scripts) {
        try {
            write(script);
            ADD_FAILURE() << script;
        } catch (vxcore::ErrorException const & e) {
            EXPECT_EQ(e.info()->code(), code_of(std::string("unexpected") + code));
        }
    }
    std::string const deep(256, '[');
    EXPECT_EQ(write(deep + std::string(256, ']')), deep + std::string(256, ']'));
    expect_error([&] { write(deep + "{"); }, code_of("unexpected.container.begin"),
                 "More than 256 objects and arrays are open");
    std::string text;
    TextWriter writer(text);
    for (std::string_view const bad : {"", "01", "1 ", "-", "NaN", "1.e5"}) {
        EXPECT_THROW(writer.write_number(bad.data(), size_of(bad)), vxcore::ErrorException);
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
    run(writer, "[");
    std::string expected = "[";
    for (std::size_t size = 0; size < 6000; size += 7) {
        std::string const text(size, 'x');
        writer.write_string(text.data(), size_of(text));
        expected += (size == 0 ? "\"" : ",\"") + text + "\"";
    }
    run(writer, "]");
    writer.finish();
    writer.finish();
    EXPECT_EQ(target.text, expected + "]");
    EXPECT_LT(target.count, 1200); // 2.5 MB
}

} // namespace
