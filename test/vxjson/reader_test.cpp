#include "scan.h"
#include "scripted_tokenizer.h"
#include "support/allocation.h"
#include "support/expect_error.h"

#include "vxjson/document.h"

#include <optional>

namespace {

using namespace vxjson;
using vxtest::expect_error;
using vxtest::ForwardingTokenizer;
using vxtest::ScriptedTokenizer;
using Value = Reader::Value;

vxcore::ErrorCode const readerCode("error.vxjson.reader", true);

/// Returns all values of a document in one line, in the form that documents.txt describes.
std::string walk(Reader & reader) {
    std::string line;
    try {
        while (auto const value = reader.next_value()) {
            line += value->name() + std::string(to_string(value->type()), 0, 2);
            line += value->type() < Value::eType_Null ? " " : "(" + value->as_string() + ") ";
        }
        EXPECT_EQ(reader.next_value(), nullptr); // again and again
        return line + ".";
    } catch (vxcore::ErrorException const & e) {
        EXPECT_EQ(reader.current(), nullptr);
        EXPECT_EQ(reader.error(), e.info());
        std::string const function = e.info()->location().function().data();
        return line + "! " + e.what() + " in " + function.substr(function.rfind(':') + 1);
    }
}

std::string walk_script(std::string const & script) {
    ScriptedTokenizer tokenizer(script);
    Reader reader(tokenizer);
    return walk(reader);
}

TEST(Reader, WalksDocumentsAsTheTableTells) {
    int const count = vxtest::for_each_case(
        "vxjson/documents.txt",
        [](std::string const & text, std::string const & expected, std::string const & words) {
            Document::Options options;
            options.tokenizer.allow_unquoted_names = true;
            options.reader.allow_reserved_names = words == "= reserved";
            Document document(text.data(), text.size(), options);
            EXPECT_EQ(walk(document.reader()), vxtest::decode(expected)) << text;
        });
    EXPECT_GT(count, 25);
}

using Values = std::vector<Reader::ValuePtr>;

/// Returns what a reader reports of a document: each value with the place after it, and the
/// failure. Reads some texts at once and some in part, and puts some values in `kept`.
std::string describe(ITokenizer & tokenizer, Reader & reader, std::size_t habit, Values & kept) {
    std::string line;
    try {
        while (auto const value = reader.next_value()) {
            SourcePosition place;
            tokenizer.position(place);
            line += to_string(value->type()) + std::to_string(place.line) + ':' +
                    std::to_string(place.linePos) + ':' + std::to_string(place.sourcePos) + ' ';
            bool const isContainer = value->type() < Value::eType_Null;
            if (++habit % 4 == 0 && !isContainer) {
                line += value->name() + value->as_string();
            } else if (habit % 4 == 1 && value->type() == Value::eType_String) {
                std::string byte(1, ' ');
                byte.resize(value->as_stream()->read(byte.data(), 1));
                line += byte;
            } else if (habit % 4 == 2 && value->type() == Value::eType_Number) {
                vxcore::ErrorInfo::Ptr failure; // a number may be too large
                line += std::to_string(value->as_double(&failure));
            } else if (habit % 4 != 2) {
                kept.push_back(value);
                if (habit % 16 == 15) {
                    return line; // the reader ends before its document
                }
            }
        }
        return line + '.';
    } catch (vxcore::ErrorException const & e) {
        return line + e.what();
    }
}

/// Returns the texts of values that the reader has left.
std::string texts(Values const & kept) {
    std::string line;
    for (auto const & value : kept) {
        bool const isLoaded =
            value->type() >= Value::eType_Null && value->type() < Value::eType_String;
        line += value->name() + '=' + (isLoaded ? value->as_string() : "") + ' ';
    }
    return line;
}

/// Expects the same of a text in memory, through a small buffer, and by virtual calls.
void compare_roads(std::string const & text, std::size_t seed) {
    Document::Options options;
    options.tokenizer.allow_comments = seed % 2 != 0;
    options.tokenizer.allow_unquoted_names = seed % 3 != 0;
    options.tokenizer.allow_single_quotes = seed % 5 == 0;
    options.tokenizer.validate_utf8 = seed % 7 == 0;
    options.tokenizer.max_depth = static_cast<unsigned int>(1 + seed % 5);
    options.tokenizer.max_number_size = 5;
    options.tokenizer.buffer_size = static_cast<unsigned int>(1 + seed % 19);
    Tokenizer source(text.data(), text.size(), options.tokenizer);
    ForwardingTokenizer forwarding(source);
    Reader reader(forwarding);
    Values kept;
    std::string const expected = describe(forwarding, reader, seed, kept);
    std::string const expectedTexts = texts(kept);
    for (bool const isStream : {false, true}) {
        // A block of exactly this size, so that sanitizers notice a read past its end.
        std::unique_ptr<char[]> copy(new char[text.size()]);
        text.copy(copy.get(), text.size());
        vxtest::TextStream stream(text);
        std::optional<Document> document;
        isStream ? document.emplace(stream, options)
                 : document.emplace(copy.get(), text.size(), options);
        Values values;
        EXPECT_EQ(describe(document->tokenizer(), document->reader(), seed, values), expected)
            << text << " seed " << seed << isStream;
        document.reset();
        copy.reset();
        EXPECT_EQ(texts(values), expectedTexts) << text;
    }
}

TEST(Reader, PlainTextIsReadAsTokensTell) {
    std::string_view const bytes = "{}[],:\"\\/' \n\t0-.eantx_*\x01\xC3";
    std::size_t seed = 0;
    vxtest::for_each_case("vxjson/documents.txt", [&](std::string const & text, auto const &...) {
        compare_roads(text, ++seed);
        for (std::size_t at = 0; at < text.size(); ++at) {
            for (char const byte : bytes) {
                std::string changed = text;
                changed[at] = byte;
                compare_roads(changed, ++seed);
                compare_roads(text.substr(0, at) + byte + text.substr(at), ++seed);
            }
            compare_roads(text.substr(0, at), ++seed);
            compare_roads(text + text.substr(at), ++seed);
        }
    });
    EXPECT_GT(seed, 10'000u);
}

TEST(Reader, TakesWhatOnlyOtherTokenizersGive) {
    std::string const unexpected = "]: Unexpected tokenizer token: eToken_";
    for (auto const & [script, values] : std::initializer_list<std::array<std::string, 2>>{
             {"End", "."},
             {"[ \" =ab = =c \"] ] End", "Ar St(abc) ."},
             {"{ \" =x > : 1 < =y \"] : 2 } End", "Ob xNu(1) yNu(2) ."},
             {"Start Start [ Start",
              "Ar ! [line 1, pos 4" + unexpected + "DocumentStart in read_value()"},
             {"{ \" =a ,", "Ob ! [line 1, pos 4" + unexpected + "Punctuator in read_value()"},
             {"Unknown", "! [line 1, pos 1" + unexpected + "Unknown in next_value()"},
             {"[ Error", "Ar ! scan failed in "},
             {"[ 1 Mute", "Ar ! [line 1, pos 3" + unexpected + "Error in next_token()"}}) {
        EXPECT_EQ(walk_script(script), values);
    }
}

TEST(Reader, TellsTheOriginAndEndsWithItsFirstFailure) {
    ScriptedTokenizer tokenizer("1");
    tokenizer.uri = "file:a";
    Reader reader(tokenizer);
    auto const info =
        expect_error([&] { reader.next_value(); },
                     vxcore::ErrorCode("error.vxjson.reader.unexpected.token", true),
                     "[line 1, pos 1, uri <file:a>]: Unexpected tokenizer token: eToken_Number");
    for (auto const & [name, value] : std::initializer_list<std::array<char const *, 2>>{
             {"uri", "file:a"}, {"line", "1"}, {"linePos", "1"}, {"sourcePos", "7"}}) {
        EXPECT_EQ(*info->params().find_value(name), value);
    }
    tokenizer.uri.clear();
    char const * const text = "[line 1, pos 1]: Value cannot be read after a parse error";
    expect_error([&] { reader.next_value(); }, readerCode, text);
    auto const last = expect_error([&] { reader.next_child(nullptr); }, readerCode, text);
    EXPECT_STREQ(last->location().function().data(), "vxjson::Reader::next_child()");
    EXPECT_EQ(*last->params().find_value("uri"), "");
    EXPECT_EQ(reader.error(), last);
}

TEST(Reader, KeepsItsPlaceWhenTheTokenizerRaises) {
    for (auto const & [script, error] : std::initializer_list<std::array<char const *, 2>>{
             {"[ Throw", "scan failed"},
             {"[ ThrowMute", "[line 1, pos 2]: Unexpected tokenizer token: eToken_Error"},
             {"[ Memory", "[line 1, pos 2]: Unexpected tokenizer token: eToken_Error"}}) {
        ScriptedTokenizer tokenizer(script);
        Reader reader(tokenizer);
        auto const array = reader.next_value();
        EXPECT_THROW(reader.next_value(), std::exception);
        EXPECT_EQ(reader.error()->text(), error);
        EXPECT_EQ(reader.current(), array);
        EXPECT_THROW(reader.next_value(), vxcore::ErrorException);
    }
    ScriptedTokenizer tokenizer("[ Nothing 1 ] End"); // no failure of the reader
    Reader reader(tokenizer);
    reader.next_value();
    EXPECT_THROW(reader.next_value(), std::out_of_range);
    EXPECT_EQ(reader.error(), nullptr);
    EXPECT_EQ(reader.next_value()->as_double(), 1);
}

/// Returns the names of all children, as nested loops down to some depth see them.
std::string children(Reader & reader, Reader::ValuePtr const & parent, int depth) {
    std::string line = "(";
    while (auto const child = reader.next_child(parent)) {
        line += child->name();
        line += depth > 0 && child->type() < Value::eType_Null ? children(reader, child, depth - 1)
                                                               : "";
    }
    return line + ")";
}

TEST(Reader, ChildrenBelongToTheLoopOfTheirParent) {
    std::string const text =
        "{\"a\":{\"b\":{\"c\":1,\"d\":\"x\"},\"e\":[]},\"f\":[{\"g\":{}},2],\"h\":3}{\"i\":0}";
    for (auto const & [depth, seen] : std::initializer_list<std::pair<int, char const *>>{
             {1, "((afh)(i))"}, {2, "((a(be)f()h)(i))"}, {4, "((a(b(cd)e())f((g()))h)(i))"}}) {
        Document document(text.data(), text.size());
        EXPECT_EQ(children(document.reader(), document.reader().current(), depth), seen);
    }
    // A loop over documents leaves the next one pending, and it is the parent of the next loop.
    Document document(text.data(), text.size());
    document.reader().next_value();
    EXPECT_EQ(children(document.reader(), document.reader().current(), 0), "(afh)");
    EXPECT_EQ(children(document.reader(), document.reader().current(), 0), "(i)");
    EXPECT_EQ(document.reader().current(), nullptr);
}

TEST(Reader, PendingValuesAreDeliveredFirst) {
    ScriptedTokenizer tokenizer("[ [ 1 ] 2 ] End");
    Reader reader(tokenizer);
    auto const outer = reader.next_value();
    auto const inner = reader.next_value();
    EXPECT_EQ(reader.next_child(inner)->as_string(), "1");
    EXPECT_EQ(reader.next_child(inner), nullptr);
    EXPECT_EQ(reader.next_child(inner), nullptr);
    EXPECT_EQ(reader.next_child(outer)->as_string(), "2");
    expect_error([&] { reader.next_child(nullptr); }, readerCode,
                 "[line 1, pos 6]: Parent parameter cannot be NULL");
}

TEST(Reader, ShortMemoryIsNeverTheEnd) {
    std::string_view const text = "{\"a name of some length\":[\"\",1e5],\"b\":{}}[]";
    std::optional<Document> document;
    unsigned long const failures = vxtest::fail_each_allocation(
        [&] {
            document.reset();
            document.emplace(text.data(), text.size());
            int count = 0;
            while (document->reader().next_value()) {
                ++count;
            }
            EXPECT_EQ(count, 6);
        },
        [&] {
            if (document) {
                EXPECT_THROW(document->reader().next_value(), vxcore::ErrorException);
            }
        });
    EXPECT_GE(failures, 5u);

    std::string_view const comma = "[1 2,]5]";
    document.emplace(comma.data(), comma.size());
    auto const array = document->reader().next_value();
    double number = 0;
    ASSERT_TRUE(document->reader().next_number(array, number));
    vxtest::fail_allocation(1);
    EXPECT_THROW(document->reader().next_number(array, number), std::bad_alloc);
    EXPECT_EQ(number, 1);
    EXPECT_THROW(document->reader().next_value(), vxcore::ErrorException);
}

TEST(Reader, DepthCostsNeitherStackNorTime) {
    Document::Options options;
    options.tokenizer.max_depth = 200'000;
    std::string const text(200'000, '[');
    Document document(text.data(), text.size(), options);
    auto const outer = document.reader().next_value();
    document.reader().next_child(outer);
    EXPECT_THROW(document.reader().next_child(outer), vxcore::ErrorException); // at the bottom
}

} // namespace
