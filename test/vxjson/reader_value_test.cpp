#include "scan.h"
#include "scripted_tokenizer.h"
#include "support/expect_error.h"

#include "vxjson/document.h"

#include <optional>

namespace {

using namespace vxjson;
using Value = Reader::Value;

std::string read(Value & value, std::string const & operation, Value::ErrorSlot error) {
    switch (operation[0]) {
    case 's':
        return value.as_string(error);
    case 'd':
        return std::to_string(value.as_double(error));
    case 'b':
        return std::to_string(value.as_bool(error));
    default:
        break;
    }
    auto const stream = value.as_stream(error);
    EXPECT_EQ(stream.get(), value.as_stream(error).get());
    if (!stream || operation[0] == 'z') {
        return stream ? std::to_string(stream->size()) : "";
    }
    auto const size = static_cast<unsigned int>(operation[1] - '0');
    if (operation[0] == 'k') {
        return std::to_string(stream->skip(size));
    }
    std::string text(size, '#');
    text.resize(stream->read(text.data(), size));
    return text;
}

/// Returns a line of results, as in the table. Failures are raised, or stored in slots.
std::string play(std::string const & script, std::string const & operations, bool slots) {
    vxtest::ScriptedTokenizer tokenizer(script);
    Reader reader(tokenizer);
    std::vector<Reader::ValuePtr> values{reader.current()};
    std::string line;
    std::istringstream words(operations);
    for (std::string word; words >> word;) {
        line += line.empty() ? "" : " ";
        try {
            if (word == "next") {
                values.push_back(reader.next_value());
                line += values.back() ? "+" : ".";
                continue;
            }
            if (word == "number") {
                double number = 0;
                bool const isNumber = reader.next_number(values.at(1), number);
                line += isNumber ? "<" + std::to_string(number) + ">" : ".";
                continue;
            }
            vxcore::ErrorInfo::Ptr error;
            Value & value = *values.at(static_cast<std::size_t>(word[0] - '0'));
            std::string const text = read(value, word.substr(1), slots ? &error : nullptr);
            if (error) {
                EXPECT_EQ(text.find_first_not_of("0."), text.npos) << "what it has is none";
                vxcore::throw_error(error);
            }
            line += "<" + text + ">";
        } catch (vxcore::ErrorException const & e) {
            line += std::string("! ") + e.what() + " in " + e.info()->location().function().data();
            line += reader.error() == e.info() && !reader.current() ? "*" : "";
        }
    }
    return line;
}

TEST(ReaderValue, GivesWhatTheTableTells) {
    int const count =
        vxtest::for_each_case("vxjson/values.txt", [](std::string const & text,
                                                      std::string const & expected, auto const &) {
            std::size_t const bar = text.find('|');
            for (bool const slots : {false, true}) {
                EXPECT_EQ(play(text.substr(0, bar), text.substr(bar + 1), slots), expected) << text;
            }
        });
    EXPECT_GT(count, 15);
}

TEST(ReaderValue, StreamsOutliveTheirValueOnlyToRaise) {
    std::optional<Document> document(std::in_place, "[\"abc\",\"def\"]", 13u);
    auto const array = document->reader().next_value(); // which must not keep its elements
    auto const expect_gone = [](vxcore::IReadStream & stream) {
        vxtest::expect_error([&] { stream.skip(1); },
                             vxcore::ErrorCode("error.vxjson.reader.value", true),
                             "The current value is no longer available");
        EXPECT_THROW(stream.size(), vxcore::ErrorException);
    };
    auto const passed = document->reader().next_value()->as_stream();
    auto const last = document->reader().next_value()->as_stream();
    expect_gone(*passed); // the reader did not make its next value of the one before
    EXPECT_EQ(last->skip(2), 2u);
    document.reset();
    expect_gone(*last);
    document.emplace("[\"ab", 4u);
    document->reader().next_value();
    auto const broken = document->reader().next_value()->as_stream();
    EXPECT_THROW(broken->skip(3),
                 vxcore::ErrorException); // the reader lets go of the value meanwhile
    expect_gone(*broken);
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
