#include "scripted_tokenizer.h"
#include "support/expect_error.h"

#include "vxjson/reader.h"
#include "vxjson/tokenizer.h"

namespace {

using namespace vxjson;
using vxtest::ScriptedTokenizer;
using Value = Reader::Value;

std::string const afterError = "Value cannot be read after a parse error";

/// All values of a document, "(...)" around the text of scalars; "." at the end, for a failure its
/// message and the function that raised it.
std::string walk(ITokenizer & tokenizer, Reader::Options const & options = {}) {
    Reader reader(tokenizer, options);
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
    return walk(tokenizer);
}

std::string walk_text(std::string const & text, Reader::Options const & options = {}) {
    Tokenizer::Options lexis;
    lexis.allow_unquoted_names = true;
    Tokenizer tokenizer(text.data(), text.size(), lexis);
    return walk(tokenizer, options);
}

TEST(Reader, WalksDocumentsInOrder) {
    for (auto const & [text, values] : std::initializer_list<std::array<char const *, 2>>{
             {"", "."},
             {"{}", "Ob ."},
             {"{} []{}", "Ob Ar Ob ."},
             {"[1 2,3]", "Ar Nu(1) Nu(2) Nu(3) ."},
             {"{\"a\":null,b:\"x\\ny\" c:[true,[false],{}]}",
              "Ob aNu(null) bSt(x\ny) cAr Bo(true) Ar Bo(false) Ob ."},
             {"[\"\",\"\"]", "Ar St() St() ."},
             // Commas are taken behind what has a name or is a scalar.
             {"{\"a\":{,\"b\":1}}", "Ob aOb bNu(1) ."},
             {"{\"a\":[,1]}", "Ob aAr Nu(1) ."},
             {"{\"a\":1 \"b\":2}", "Ob aNu(1) bNu(2) ."},
             {"[{}{}]", "Ar Ob Ob ."}}) {
        EXPECT_EQ(walk_text(text), values) << text;
    }
    EXPECT_EQ(walk_script("[ \" =ab = =c \"] ] End"), "Ar St(abc) .");
    EXPECT_EQ(walk_script("{ \" =x > : 1 < =y \"] : 2 } End"), "Ob xNu(1) yNu(2) .");
}

TEST(Reader, RefusesWhatFitsNowhere) {
    std::string const comma = "Unexpected tokenizer token: eToken_Punctuator in consume_comma()";
    std::string const next = "Unexpected tokenizer token: eToken_Punctuator in next_value()";
    std::string const read = "Unexpected tokenizer token: eToken_Punctuator in read_value()";
    for (auto const & [text, failure] : std::initializer_list<std::array<std::string, 2>>{
             {"[,1]", "2]: " + next},
             {"[1,]", "4]: " + comma},
             {"[1,,2]", "4]: " + comma},
             {"{\"a\":{},}", "9]: " + comma},
             {"{\"a\":,1}", "6]: " + read},
             {"{\"a\":[,,1]}", "8]: " + comma},
             {"{,}", "2]: " + next},
             {"[}", "2]: " + next},
             {"{]", "2]: " + next},
             {"]", "1]: " + next},
             {"{\"a\",1}", "5]: " + read},
             {"1", "1]: Unexpected tokenizer token: eToken_Number in next_value()"},
             {"{1:2}", "2]: Unexpected tokenizer token: eToken_Number in next_value()"},
             {"{\"a\" 1}", "6]: Unexpected tokenizer token: eToken_Number in read_value()"},
             {"[a]", "2]: Unexpected tokenizer token: eToken_IdentifierBegin in read_value()"},
             {"{\"a\":1", "7]: End of document reached without all objects properly closed in "
                          "next_value()"},
             {"[[]", "4]: End of document reached without all arrays properly closed in "
                     "next_value()"}}) {
        std::string const result = walk_text(text);
        EXPECT_EQ(result.substr(result.find('!')), "! [line 1, pos " + failure) << text;
    }
    EXPECT_EQ(walk_script("Start Start [ Start"),
              "Ar ! [line 1, pos 4]: Unexpected tokenizer token: eToken_DocumentStart in "
              "read_value()");
    EXPECT_EQ(walk_script("{ \" =a ,"),
              "Ob ! [line 1, pos 4]: Unexpected tokenizer token: eToken_Punctuator in "
              "read_value()");
    EXPECT_EQ(walk_script("Unknown"),
              "! [line 1, pos 1]: Unexpected tokenizer token: eToken_Unknown in next_value()");
}

TEST(Reader, RefusesNames) {
    auto const refused = [](std::string const & name) {
        return "A JSON field '" + name +
               "' has a name that is a reserved keyword. In order to use this name the reader "
               "option 'allow_reserved_names' has to be set. in read_value()";
    };
    EXPECT_EQ(walk_text("{class:1}"), "Ob ! [line 1, pos 7]: " + refused("class"));
    EXPECT_EQ(walk_text("{\"in\":1}"), "Ob ! [line 1, pos 5]: " + refused("in"));
    EXPECT_EQ(walk_text("{\"class\":1}", {true}), "Ob classNu(1) .");
    EXPECT_EQ(walk_text("{\"\":1}", {true}), "Ob ! [line 1, pos 3]: " + refused(""));
}

TEST(Reader, TellsTheOriginAndEndsWithItsFirstFailure) {
    ScriptedTokenizer tokenizer("1");
    tokenizer.uri = "file:a";
    Reader reader(tokenizer);
    auto const info = vxtest::expect_error(
        [&] { reader.next_value(); },
        vxcore::ErrorCode("error.vxjson.reader.unexpected.token", true),
        "[line 1, pos 1, uri <file:a>]: Unexpected tokenizer token: eToken_Number");
    for (auto const & [name, value] : std::initializer_list<std::array<char const *, 2>>{
             {"uri", "file:a"}, {"line", "1"}, {"linePos", "1"}, {"sourcePos", "7"}}) {
        EXPECT_EQ(*info->params().find_value(name), value);
    }
    tokenizer.uri.clear();
    vxcore::ErrorCode const code("error.vxjson.reader", true);
    std::string const text = "[line 1, pos 1]: " + afterError;
    vxtest::expect_error([&] { reader.next_value(); }, code, text.c_str());
    auto const last = vxtest::expect_error([&] { reader.next_child(nullptr); }, code, text.c_str());
    EXPECT_STREQ(last->location().function().data(), "vxjson::Reader::next_child()");
    EXPECT_EQ(*last->params().find_value("uri"), "");
    EXPECT_EQ(reader.error(), last);
}

TEST(Reader, TakesOverFailuresOfTheTokenizer) {
    EXPECT_EQ(walk_script("[ Error"), "Ar ! scan failed in ");
    EXPECT_EQ(walk_script("[ 1 Mute"),
              "Ar ! [line 1, pos 3]: Unexpected tokenizer token: eToken_Error in next_token()");
    for (auto const & [script, error] : std::initializer_list<std::array<char const *, 2>>{
             {"[ Throw", "scan failed"},
             {"[ ThrowMute", "[line 1, pos 2]: Unexpected tokenizer token: eToken_Error"},
             {"[ Memory", "[line 1, pos 2]: Unexpected tokenizer token: eToken_Error"}}) {
        ScriptedTokenizer tokenizer(script);
        Reader reader(tokenizer);
        auto const array = reader.next_value();
        EXPECT_THROW(reader.next_value(), std::exception);
        EXPECT_EQ(reader.error()->text(), error);
        EXPECT_EQ(reader.current(), array); // it stays
        EXPECT_THROW(reader.next_value(), vxcore::ErrorException);
        EXPECT_EQ(reader.current(), nullptr);
    }
    ScriptedTokenizer tokenizer("[ Nothing 1 ] End"); // no failure of the reader
    Reader reader(tokenizer);
    reader.next_value();
    EXPECT_THROW(reader.next_value(), std::out_of_range);
    EXPECT_EQ(reader.error(), nullptr);
    EXPECT_EQ(reader.next_value()->as_double(), 1);
}

/// The names of all objects and fields as nested loops over children see them.
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
    std::string const text = "{\"a\":{\"b\":{\"c\":1,\"d\":\"x\"},\"e\":[]},\"f\":[{\"g\":{}},2],"
                             "\"h\":3}{\"i\":0}";
    for (auto const & [depth, seen] :
         std::initializer_list<std::pair<int, char const *>>{{0, "()"},
                                                             {1, "((afh)(i))"},
                                                             {2, "((a(be)f()h)(i))"},
                                                             {4, "((a(b(cd)e())f((g()))h)(i))"}}) {
        Tokenizer tokenizer(text.data(), text.size());
        Reader reader(tokenizer);
        EXPECT_EQ(children(reader, reader.current(), depth), seen);
    }
}

TEST(Reader, PendingValueThatIsTheParentItselfIsLeft) {
    std::string const text = "{\"a\":1}{\"b\":2}[3]";
    Tokenizer tokenizer(text.data(), text.size());
    Reader reader(tokenizer);
    std::string line;
    reader.next_value();
    while (reader.current()) { // a loop over documents; the last next_child leaves the next pending
        line += children(reader, reader.current(), 0);
    }
    EXPECT_EQ(line, "(a)(b)()");
    // Any other pending value is delivered first.
    ScriptedTokenizer script("[ [ 1 ] 2 ] End");
    Reader second(script);
    auto const outer = second.next_value();
    auto const inner = second.next_value();
    EXPECT_EQ(second.next_child(inner)->as_string(), "1");
    EXPECT_EQ(second.next_child(inner), nullptr);
    EXPECT_EQ(second.next_child(inner), nullptr);
    EXPECT_EQ(second.next_child(outer)->as_string(), "2");
    vxtest::expect_error([&] { second.next_child(nullptr); },
                         vxcore::ErrorCode("error.vxjson.reader", true),
                         "[line 1, pos 6]: Parent parameter cannot be NULL");
}

TEST(Reader, DepthCostsNeitherStackNorTime) {
    constexpr int depth = 200'000;
    std::string text;
    for (int i = 0; i < depth; ++i) {
        text += i % 2 == 0 ? "[" : "{\"a\":";
    }
    Tokenizer::Options options;
    options.max_depth = depth;
    Tokenizer tokenizer(text.data(), text.size(), options);
    Reader reader(tokenizer);
    auto const outer = reader.next_value();
    reader.next_child(outer);
    EXPECT_THROW(reader.next_child(outer), vxcore::ErrorException); // at the bottom
    Tokenizer again(text.data(), text.size(), options);
    Reader walker(again);
    Reader::ValuePtr deepest = outer;
    for (int i = 0; i < depth; ++i) {
        deepest = walker.next_value();
    }
}

} // namespace
