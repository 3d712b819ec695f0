#include "scan.h"
#include "scripted_tokenizer.h"
#include "support/expect_error.h"

#include "vxjson/document.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <tuple>

namespace {

using namespace vxjson;
using vxtest::expect_error;
using vxtest::ScriptedTokenizer;
using Value = Reader::Value;

vxcore::ErrorCode const readerCode("error.vxjson.reader", true);
vxcore::ErrorCode const valueCode("error.vxjson.reader.value", true);

/// A reader over a script that stands on the n-th value.
struct Script {
    explicit Script(std::string const & script, int steps = 2)
        : tokenizer(script), reader(tokenizer) {
        for (int i = 0; i < steps; ++i) {
            value = reader.next_value();
        }
    }

    std::string read(unsigned int size) {
        std::string text(size, '#');
        text.resize(value->as_stream()->read(text.data(), size));
        return text;
    }

    ScriptedTokenizer tokenizer;
    Reader reader;
    Reader::ValuePtr value;
};

TEST(ReaderValue, TextStaysReadableOnceLoaded) {
    Script script("[ \" =ab =c \"] , 1.50 , true , null , \" \"] ] End");
    auto const string = script.value;
    EXPECT_EQ(string->as_string(), "abc");
    auto const number = script.reader.next_value();
    auto const boolean = script.reader.next_value();
    EXPECT_EQ(script.reader.next_value()->as_string(), "null");
    EXPECT_EQ(script.reader.next_value()->as_string(), "");
    EXPECT_EQ(script.reader.next_value(), nullptr);
    EXPECT_EQ(string->as_string(), "abc");
    EXPECT_EQ(number->as_string(), "1.50");
    EXPECT_EQ(number->as_double(), 1.5);
    EXPECT_TRUE(boolean->as_bool());
}

TEST(ReaderValue, NumbersConvert) {
    for (auto const & [text, number] : std::initializer_list<std::pair<char const *, double>>{
             {"0", 0},
             {"-7", -7},
             {"999999999999999", 999999999999999},
             {"-999999999999999", -999999999999999},
             {"9007199254740993", 9007199254740992},
             {"1e3", 1000},
             {"1e-999", 0}}) {
        EXPECT_EQ(Script(std::string("[ ") + text).value->as_double(), number) << text;
    }
    EXPECT_TRUE(std::signbit(Script("[ -0").value->as_double()));
}

TEST(ReaderValue, FailedConversionsSpareTheReader) {
    for (char const * const word : {"1e999", "1-2", "-", "5x"}) {
        Script script(std::string("[ ") + word + " 7 ]");
        vxcore::ErrorInfo::Ptr error;
        EXPECT_EQ(script.value->as_double(&error), 0);
        EXPECT_EQ(error->text(), std::string("Cannot convert '") + word + "' to double");
        EXPECT_EQ(script.reader.error(), nullptr);
        EXPECT_EQ(script.reader.next_value()->as_double(), 7);
        // The value itself has failed, and to ask it once more ends the reader.
        expect_error([&] { script.value->as_double(); }, valueCode,
                     "[line 1, pos 4]: Value cannot be read after a parse error");
        EXPECT_NE(script.reader.error(), nullptr);
    }
    EXPECT_THROW(Script("[ tru").value->as_bool(), vxcore::ErrorException);
}

TEST(ReaderValue, OtherTypesEndTheReader) {
    using Slot = Value::ErrorSlot;

    struct Row {
        char const * script;
        void (*read)(Value &, Slot);
        std::string text;
        std::string function;
    };

    for (Row const &row : std::initializer_list<Row>{
             {"[ [ ]", [](Value &v, Slot e) { EXPECT_EQ(v.as_string(e), ""); },
              "2]: Cannot return current value type <Array> as a string", ":Value::as_string()"},
             {"[ \" =1", [](Value &v, Slot e) { EXPECT_EQ(v.as_double(e), 0); },
              "3]: Cannot return current value type <String> as a double", ":Value::as_double()"},
             {"[ 1 ]", [](Value &v, Slot e) { EXPECT_FALSE(v.as_bool(e)); },
              "3]: Cannot return current value type <Number> as a bool", ":Value::as_bool()"},
             {"[ null ]", [](Value &v, Slot e) { EXPECT_FALSE(v.as_stream(e)); },
              "3]: Cannot return current value type <Null> as a string", "::Value::as_stream()"}}) {
        Script script(row.script), again(row.script);
        vxcore::ErrorInfo::Ptr error;
        row.read(*script.value, &error);
        ASSERT_NE(error, nullptr) << row.text;
        EXPECT_EQ(error->text(), "[line 1, pos " + row.text);
        EXPECT_EQ(error->location().function().data(), "vxjson::Reader" + row.function);
        EXPECT_EQ(script.reader.error(), error);
        EXPECT_EQ(script.reader.current(), nullptr);
        expect_error([&] { row.read(*again.value, nullptr); }, valueCode, error->text().c_str());
    }
}

TEST(ReaderValue, UnreadStringsAreGoneOnceTheReaderHasMovedOn) {
    Script script("[ \" =a \"] , 1 ] End");
    script.reader.next_value();
    expect_error([&] { script.value->as_string(); }, valueCode,
                 "[line 1, pos 7]: The current value is no longer available");
}

TEST(ReaderValue, StreamsDeliverPiecesOfAnySize) {
    for (unsigned int const size : {1u, 2u, 3u, 4u, 5u, 6u}) {
        Script script("[ \" =abc = =de \"] 5 ] End");
        EXPECT_EQ(script.value->as_stream().get(), script.value->as_stream().get());
        std::string text;
        for (std::string piece; !(piece = script.read(size)).empty();) {
            EXPECT_EQ(script.value->as_stream()->size(), piece.size() < size ? 0 : -1);
            text += piece;
        }
        EXPECT_EQ(text, "abcde");
        EXPECT_EQ(script.read(size), "");
        EXPECT_EQ(script.value->as_stream()->size(), 0);
        EXPECT_EQ(script.reader.next_value()->as_double(), 5);
    }
    Script script("[ \" =abc =de \"] 5 ] End");
    EXPECT_EQ(script.value->as_stream()->skip(1), 1u);
    EXPECT_EQ(script.read(3), "bcd");
    EXPECT_EQ(script.reader.next_value()->as_double(), 5); // the rest is dropped
    EXPECT_EQ(Script("[ \" \"] ] End").read(3), "");
}

TEST(ReaderValue, StreamOfALoadedTextLeavesTheReaderAlone) {
    Script script("[ \" =abc \"] \" =xyz \"] ] End");
    script.value->as_string();
    auto const second = script.reader.next_value();
    EXPECT_EQ(script.value->as_stream()->size(), 3);
    EXPECT_EQ(script.read(2), "ab");
    EXPECT_EQ(script.read(2), "c");
    EXPECT_EQ(script.read(2), "");
    EXPECT_EQ(second->as_string(), "xyz");
    EXPECT_EQ(script.reader.next_value(), nullptr);
}

TEST(ReaderValue, StaleStreamsTakeNothing) {
    for (int const before : {0, 2}) {
        Script script("[ \" =abc \"] \" =xyz \"] } End");
        script.value->as_stream()->skip(static_cast<unsigned int>(before));
        auto const second = script.reader.next_value();
        EXPECT_EQ(script.read(2), "");
        EXPECT_EQ(script.value->as_stream()->size(), 0);
        EXPECT_EQ(second->as_string(), "xyz");
    }
    for (int const before : {0, 2}) { // the reader has failed meanwhile
        Script script("[ \" =abc \"] }");
        script.value->as_stream()->skip(static_cast<unsigned int>(before));
        EXPECT_THROW(script.reader.next_value(), vxcore::ErrorException);
        auto const info = expect_error([&] { script.read(2); }, readerCode,
                                       "[line 1, pos 5]: Value cannot be read after a parse error");
        EXPECT_STREQ(info->location().function().data(),
                     "Reader::Value::ValueReadStreamImpl::check_state()");
    }
    std::optional<Script> script("[ \" =abc \"] ] End");
    auto const stream = script->value->as_stream();
    script.reset();
    expect_error([&] { stream->skip(1); }, valueCode, "The current value is no longer available");
    EXPECT_THROW(stream->size(), vxcore::ErrorException);
}

TEST(ReaderValue, FailuresInsideAStringFailTheValue) {
    Script script("[ \" =ab Error");
    expect_error([&] { script.read(3); }, vxcore::ErrorCode("error.scripted", true), "scan failed");
    std::string const after = "[line 1, pos 4]: Value cannot be read after a parse error";
    expect_error([&] { script.value->as_stream()->size(); }, readerCode, after.c_str());
    expect_error([&] { script.value->as_string(); }, valueCode, after.c_str());
}

TEST(ReaderValue, HoldsStringsUpToTheLimitAndStreamsAny) {
    std::string text = "[\"" + std::string(134217728, 'x') + "\"]";
    for (bool const fits : {true, false}) {
        vxtest::TextStream source(text);
        Document document(source);
        document.reader().next_value();
        auto const value = document.reader().next_value();
        vxcore::ErrorInfo::Ptr error;
        EXPECT_EQ(value->as_string(&error).size(), fits ? 134217728u : 0u);
        ASSERT_EQ(error == nullptr, fits);
        if (!fits) {
            EXPECT_STREQ(error->code().name(), "error.vxjson.reader.unexpected.size");
            EXPECT_NE(error->text().find("]: Node value exceeds 134217728bytes of character data"),
                      std::string::npos);
        }
        text.insert(2, "x");
    }
    Document document(text.data(), text.size());
    document.reader().next_value();
    EXPECT_EQ(document.reader().next_value()->as_stream()->skip(200'000'000), 134217730u);
    EXPECT_EQ(document.reader().next_value(), nullptr);
}

} // namespace
