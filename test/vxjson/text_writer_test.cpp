#include "scan.h"
#include "support/expect_error.h"

#include "vxjson/text_writer.h"

#include <cmath>
#include <functional>
#include <limits>

namespace {

using namespace vxjson;
using Action = std::function<void(TextWriter &)>;
using Options = TextWriter::Options;

unsigned int size_of(std::string_view text) {
    return static_cast<unsigned int>(text.size());
}

void name(TextWriter & w, std::string_view text) {
    w.write_name(text.data(), size_of(text));
}

void string(TextWriter & w, std::string_view text) {
    w.write_string(text.data(), size_of(text));
}

void data(TextWriter & w, std::string_view text) {
    w.write_string_data(text.data(), size_of(text));
}

/// A string in two pieces.
void pieces(TextWriter & w, std::string_view text, std::size_t cut) {
    w.begin_string();
    data(w, text.substr(0, cut));
    data(w, text.substr(cut));
    w.end_string();
}

std::string write(Action const & action, Options const & options = {}) {
    std::string text;
    TextWriter writer(text, options);
    action(writer);
    writer.finish();
    return text;
}

void sample(TextWriter & w) {
    w.begin_object();
    name(w, "a"), w.begin_array();
    w.write_integer(std::numeric_limits<long long>::min());
    w.write_unsigned(std::numeric_limits<unsigned long long>::max());
    w.write_number("1e5", 3), w.write_bool(true), w.write_bool(false), w.write_null();
    w.end_array();
    name(w, ""), w.begin_object(), w.end_object();
    name(w, "\""), w.begin_array(), w.begin_array(), w.end_array(), string(w, "x"), w.end_array();
    name(w, "p"), pieces(w, "p\nq", 1);
    w.end_object();
}

TEST(TextWriter, LaysOutCompactAndIndented) {
    EXPECT_EQ(write(sample),
              "{\"a\":[-9223372036854775808,18446744073709551615,1e5,true,false,null]"
              ",\"\":{},\"\\\"\":[[],\"x\"],\"p\":\"p\\nq\"}");
    Options options;
    options.indent = 2;
    EXPECT_EQ(write(sample, options),
              "{\n  \"a\": [\n    -9223372036854775808,\n    18446744073709551615,\n    1e5,\n"
              "    true,\n    false,\n    null\n  ],\n  \"\": {},\n  \"\\\"\": [\n    [],\n"
              "    \"x\"\n  ],\n  \"p\": \"p\\nq\"\n}");
    options.indent = 50;
    EXPECT_EQ(
        write([](TextWriter & w) { w.begin_array(), w.write_null(), w.end_array(); }, options),
        "[\n" + std::string(50, ' ') + "null\n]");
}

TEST(TextWriter, WritesDoublesAsShortAsTheyReadBack) {
    double const infinity = std::numeric_limits<double>::infinity();
    for (auto const & [value, text] : std::initializer_list<std::pair<double, char const *>>{
             {0.0, "0.0"},
             {-0.0, "-0.0"},
             {1.0, "1.0"},
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
             {4.9e-324, "5e-324"}}) {
        EXPECT_EQ(write([&](TextWriter & w) { w.write_double(value); }), text);
    }
    Options wide;
    wide.min_exponent = -324, wide.max_exponent = 308;
    EXPECT_EQ(write([](TextWriter & w) { w.write_double(-4.9e-324); }, wide),
              "-0." + std::string(323, '0') + "5");
    EXPECT_EQ(write([](TextWriter & w) { w.write_double(-1e308); }, wide),
              "-1" + std::string(308, '0') + ".0");
    for (auto const & [value, code] : std::initializer_list<std::pair<double, char const *>>{
             {std::nan(""), "nan"}, {infinity, "inf"}, {-infinity, "inf"}}) {
        std::string const full = std::string("error.vxjson.writer.unsupported.value.") + code;
        std::string const text = std::string("JSON has no number ") + (value < 0      ? "-infinity"
                                                                       : *code == 'i' ? "infinity"
                                                                                      : "NaN");
        vxtest::expect_error([&] { write([&](TextWriter & w) { w.write_double(value); }); },
                             vxcore::ErrorCode(full.c_str(), true), text.c_str());
    }
}

TEST(TextWriter, RefusesLimitsOfExponents) {
    for (auto const & [least, most] :
         std::initializer_list<std::pair<int, int>>{{-325, 0}, {1, 5}, {0, -1}, {0, 309}}) {
        Options options;
        options.min_exponent = least, options.max_exponent = most;
        std::string const text = "Limits of exponents must be -324 to 0 and 0 to 308, and are " +
                                 std::to_string(least) + " and " + std::to_string(most);
        vxtest::expect_error([&] { write(sample, options); },
                             vxcore::ErrorCode("error.vxjson.writer.config.invalidExponent", true),
                             text.c_str());
    }
}

TEST(TextWriter, EscapesWhatMustBeOrAll) {
    std::string const text("\"\\/\b\f\n\r\t\x01\x1F\x7F\0\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E", 21);
    std::string const plain = "\"\\\"\\\\/\\b\\f\\n\\r\\t\\u0001\\u001f\x7F\\u0000";
    Options ascii;
    ascii.ascii_only = true;
    for (std::size_t cut = 0; cut <= text.size(); ++cut) {
        Action const action = [&](TextWriter & w) { pieces(w, text, cut); };
        EXPECT_EQ(write(action), plain + "\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E\"");
        EXPECT_EQ(write(action, ascii), plain + "\\u00e4\\u20ac\\ud834\\udd1e\"") << cut;
    }
}

TEST(TextWriter, ChecksUtf8OnDemandBeforeItWrites) {
    vxcore::ErrorCode const code("error.vxjson.writer.unexpected.character", true);
    std::string const bad = "abc\xE2\x82x\xE2\x82\xAC";
    EXPECT_EQ(write([&](TextWriter & w) { string(w, bad); }), "\"" + bad + "\"");
    for (bool const ascii : {true, false}) {
        Options options;
        (ascii ? options.ascii_only : options.validate_utf8) = true;
        std::string text;
        TextWriter writer(text, options);
        writer.begin_object();
        char const * const at3 = "Ill-formed UTF-8 at byte 3";
        vxtest::expect_error([&] { name(writer, bad); }, code, at3);
        name(writer, "n");
        vxtest::expect_error([&] { string(writer, bad); }, code, at3);
        writer.begin_string();
        vxtest::expect_error([&] { data(writer, bad); }, code, at3);
        data(writer, "\xE2");
        data(writer, "");
        data(writer, "\x82");
        vxtest::expect_error([&] { data(writer, "\xAC\xFF"); }, code, "Ill-formed UTF-8 at byte 1");
        vxtest::expect_error([&] { data(writer, "x"); }, code, "Ill-formed UTF-8 at byte 0");
        vxtest::expect_error([&] { writer.end_string(); }, code, "Ill-formed UTF-8 at byte 0");
        data(writer, "\xAC"); // it goes on as if nothing had been
        writer.end_string();
        writer.end_object();
        writer.finish();
        EXPECT_EQ(text, ascii ? "{\"n\":\"\\u20ac\"}" : "{\"n\":\"\xE2\x82\xAC\"}");
    }
}

/// Every call, with the end of the code of its misuse.
struct Call {
    char const * code;
    Action action;
};

std::vector<Call> const calls = {
    {"name", [](TextWriter & w) { name(w, "n"); }},
    {"number", [](TextWriter & w) { w.write_number("1", 1); }},
    {"string", [](TextWriter & w) { string(w, "s"); }},
    {"literal", [](TextWriter & w) { w.write_bool(true); }},
    {"number", [](TextWriter & w) { w.write_integer(1); }},
    {"number", [](TextWriter & w) { w.write_unsigned(1); }},
    {"number", [](TextWriter & w) { w.write_double(1); }},
    {"literal", [](TextWriter & w) { w.write_null(); }},
    {"container.begin", [](TextWriter & w) { w.begin_object(); }},
    {"container.end", [](TextWriter & w) { w.end_object(); }},
    {"container.begin", [](TextWriter & w) { w.begin_array(); }},
    {"container.end", [](TextWriter & w) { w.end_array(); }},
    {"string", [](TextWriter & w) { w.begin_string(); }},
    {"string.data", [](TextWriter & w) { data(w, "d"); }},
    {"string.end", [](TextWriter & w) { w.end_string(); }},
};

TEST(TextWriter, RefusesEachCallThatIsOutOfPlace) {
    struct Place {
        std::vector<std::size_t> before; // calls that lead there
        std::string allowed;             // a mark for each call
        std::string reason;
        std::string after; // what makes the document whole, as calls, and its text
        std::string text;
    };

    std::string const values = "-xxxxxxxx-x-x--";
    for (Place const & place : std::initializer_list<Place>{
             {{}, values, "the document has not begun", "\x07", "null"},
             {{7}, "---------------", "the document is complete", "", "null"},
             {{8}, "x--------x-----", "a name or the end of the object is due", "\x09", "{}"},
             {{8, 0}, values, "the value of a name is due", "\x07\x09", "{\"n\":null}"},
             {{10}, "-xxxxxxxx-xxx--", "an element or the end of the array is due", "\x0B", "[]"},
             {{12}, "-------------xx", "a string is open", "\x0E", "\"\""}}) {
        for (std::size_t i = 0; i < calls.size(); ++i) {
            std::string text;
            TextWriter writer(text);
            for (std::size_t const call : place.before) {
                calls[call].action(writer);
            }
            if (place.allowed[i] == 'x') {
                EXPECT_NO_THROW(calls[i].action(writer)) << place.reason << i;
                continue;
            }
            std::string const code = std::string("error.vxjson.writer.unexpected.") + calls[i].code;
            std::string const message =
                "A call of the JSON writer is out of place: " + place.reason;
            vxtest::expect_error([&] { calls[i].action(writer); },
                                 vxcore::ErrorCode(code.c_str(), true), message.c_str());
            for (char const call : place.after) { // nothing of it was written
                calls[static_cast<std::size_t>(call)].action(writer);
            }
            writer.finish();
            EXPECT_EQ(text, place.text);
        }
    }
}

TEST(TextWriter, FinishesWholeDocumentsOnly) {
    for (auto const & [call, code] : std::initializer_list<std::pair<std::size_t, char const *>>{
             {8, ".container"}, {10, ".container"}, {12, ".string"}, {99, ""}}) {
        std::string text;
        TextWriter writer(text);
        if (call < calls.size()) {
            calls[call].action(writer);
        }
        try {
            writer.finish();
            ADD_FAILURE() << "nothing was raised";
        } catch (vxcore::ErrorException const & e) {
            EXPECT_EQ(e.info()->code().name(),
                      std::string("error.vxjson.writer.unexpected") + code);
        }
        EXPECT_EQ(text, "");
    }
    for (char const * const bad : {"", "01", "1 ", "-", "NaN", "1.e5"}) {
        EXPECT_THROW(write([&](TextWriter & w) { w.write_number(bad, size_of(bad)); }),
                     vxcore::ErrorException);
    }
    std::string const deep = write([](TextWriter & w) {
        for (int i = 0; i < 256; ++i) {
            w.begin_array();
        }
        vxtest::expect_error(
            [&] { w.begin_object(); },
            vxcore::ErrorCode("error.vxjson.writer.unexpected.container.begin", true),
            "More than 256 objects and arrays are open");
        for (int i = 0; i < 256; ++i) {
            w.end_array();
        }
    });
    EXPECT_EQ(deep, std::string(256, '[') + std::string(256, ']'));
}

/// Sums up what comes in which pieces.
struct Target final : TextWriter::ITextTarget {
    void write_data(char const * bytes, unsigned int size) override {
        text.append(bytes, size);
        ++count;
    }

    std::string text;
    int count = 0;
};

TEST(TextWriter, HandsTextOnInLargePieces) {
    Target target;
    TextWriter writer(target);
    writer.begin_array();
    std::string expected = "[";
    for (std::size_t size = 0; size < 6000; size += 7) {
        string(writer, std::string(size, 'x'));
        expected += (size == 0 ? "\"" : ",\"") + std::string(size, 'x') + "\"";
    }
    writer.end_array();
    writer.finish();
    writer.finish();
    EXPECT_EQ(target.text, expected + "]");
    EXPECT_LT(target.count, 1200); // 2.5 MB
}

} // namespace
