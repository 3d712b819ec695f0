#include "forms.h"

#include <limits>

namespace {

using namespace vxtest;

struct Row {
    char const * text;
    EElementKind kind;
    void (*write)(Writer &);
};

Row const rows[] = {
    {"null", eElement_Null, [](Writer & w) { w.write_null(); }},
    {"true", eElement_Boolean, [](Writer & w) { w << true; }},
    {"-5", eElement_Integer, [](Writer & w) { w << -5; }},
    {"4294967295u", eElement_Unsigned, [](Writer & w) { w << 0xFFFFFFFFu; }},
    {"1.0", eElement_Double, [](Writer & w) { w << 1.0; }},
    {"-0.0", eElement_Double, [](Writer & w) { w << -0.0; }},
    {"1.5", eElement_Double, [](Writer & w) { w << 1.5; }},
    {"1e+300", eElement_Double, [](Writer & w) { w << 1e300; }},
    {"5e-324", eElement_Double, [](Writer & w) { w << 5e-324; }},
    {"1.7976931348623157e+308", eElement_Double, [](Writer & w) { w << 1.7976931348623157e308; }},
    {"-inf", eElement_Double, [](Writer & w) { w << -std::numeric_limits<double>::infinity(); }},
    {"nan(7ff8000000000000)", eElement_Double,
     [](Writer & w) { w << std::numeric_limits<double>::quiet_NaN(); }},
    {"<>", eElement_String, [](Writer & w) { w << ""; }},
    {"<a%3cb%3e%25 %22%27%5c%60%0a%c3%a4~>", eElement_String,
     [](Writer & w) { w << "a<b>% \"'\\`\n\xC3\xA4~"; }},
    {"@1970-01-01T00:00:01.5Z", eElement_AbsoluteTime,
     [](Writer & w) { w << vxcore::AbsoluteTime(15'000'000); }},
    {"-PT1S", eElement_RelativeTime, [](Writer & w) { w << vxcore::RelativeTime(-10'000'000); }},
    {"{00000000-0000-0000-0000-000000000000}", eElement_Uuid,
     [](Writer & w) { w << vxcore::Uuid(); }},
    {"#", eElement_Binary, [](Writer & w) { w.write_binary(nullptr, 0); }},
    {"#0aff", eElement_Binary, [](Writer & w) { w.write_binary("\x0A\xFF", 2); }},
    {"[]", eElement_List, [](Writer & w) { w.begin_list(0), w.end_list(); }},
    {"[1]", eElement_List, [](Writer & w) { w.begin_list(1), w << 1, w.end_list(); }},
    {"[2: <a> 1, 2] 3", eElement_List,
     [](Writer & w) {
         w.begin_list(2), w << "a" << 1, w.next_list_item(), w << 2, w.end_list(), w << 3;
     }},
    {"((1) #) (2u [true])", eElement_Record,
     [](Writer & w) {
         w.begin_record(), w.begin_record(), w << 1, w.end_record(), w.write_binary("", 0);
         w.end_record(), w.begin_record(), w << 2u, w.begin_list(1), w << true, w.end_list();
         w.end_record();
     }},
};

TEST(TextForm, PutsEachElementAsThePageTells) {
    for (Row const & row : rows) {
        EXPECT_EQ(write_text_form(row.write), row.text);
        for (unsigned int bufferSize : {1u, 2u, 100u}) {
            read_text_form(
                row.text,
                [&](Reader & reader) {
                    EXPECT_EQ(reader.next_type(), row.kind) << row.text;
                    EXPECT_EQ(reader.next_type(), row.kind) << row.text;
                },
                bufferSize);
        }
    }
}

TEST(TextForm, ReadsTheExampleOfThePage) {
    std::string const text = page_block("text.md", "text");
    auto const write = [](Writer & w) {
        w.begin_list(3);
        w << "port" << 8080;
        w.next_list_item();
        w << "ratio" << 0.5;
        w.next_list_item();
        w << "since" << vxcore::AbsoluteTime(17'955'315'805'000'000);
        w.end_list();
    };
    EXPECT_EQ(write_text_form(write), text);
    read_text_form(text, [](Reader & reader) {
        EXPECT_EQ(reader.begin_list(), 3u);
        ASSERT_TRUE(reader.has_next());
        EXPECT_EQ(reader.read_string_key().value(), "port");
        EXPECT_EQ(reader.read_integer(), 8080);
        ASSERT_TRUE(reader.has_next());
        EXPECT_EQ(reader.read_string_key().value(), "ratio");
        EXPECT_EQ(reader.read_double(), 0.5);
        ASSERT_TRUE(reader.has_next());
        EXPECT_EQ(reader.read_string_key().value(), "since");
        EXPECT_EQ(reader.read_absolute_time().ticks(), 17'955'315'805'000'000);
        EXPECT_FALSE(reader.has_next());
    });
}

TEST(TextForm, HoldsOnlyCharactersThatAnyTextCarries) {
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += static_cast<char>(i);
    }
    std::string const text = write_text_form([&](Writer & w) { w << bytes; });
    EXPECT_EQ(text.find_first_not_of(" !#$%&()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[]^_"
                                     "abcdefghijklmnopqrstuvwxyz{|}~"),
              text.npos);
    std::string back;
    read_text_form(
        text, [&](Reader & reader) { reader >> back; }, 3);
    EXPECT_EQ(back, bytes);
}

TEST(TextForm, IndentsListsOnDemand) {
    TextWriter::Options options;
    options.indent = 2;
    EXPECT_EQ(write_text_form(
                  [](Writer & w) {
                      w.begin_list(2), w << "a" << 1, w.next_list_item();
                      w << "b", w.begin_list(1), w << 2, w.end_list(), w.end_list();
                  },
                  options),
              "[2:\n  <a> 1,\n  <b> [\n    2\n  ]\n]");
}

TEST(TextForm, TakesMoreThanItWrites) {
    read_text_form("[\t5 ,\r\n 6 ]1<x>#AbCd<%c3%A4>[ 2 : 1, 2] 007 nan(FFF0000000000001)",
                   [](Reader & reader) {
                       EXPECT_EQ(reader.begin_list(), 0u); // announces none
                       EXPECT_TRUE(reader.has_next());
                       EXPECT_EQ(reader.read_integer(), 5);
                       EXPECT_TRUE(reader.has_next());
                       EXPECT_EQ(reader.read_integer(), 6);
                       EXPECT_FALSE(reader.has_next());
                       EXPECT_EQ(reader.read_integer(), 1);
                       EXPECT_EQ(reader.read_string_key().value(), "x");
                       EXPECT_EQ(bytes_of(reader.read_binary_as_memory_list()), "\xAB\xCD");
                       EXPECT_EQ(reader.read_string_key().value(), "\xC3\xA4");
                   });
}

TEST(TextForm, RefusesWhatIsNone) {
    for (std::string const text : {"",
                                   "nul",
                                   "NULL",
                                   "5uu",
                                   "-5u",
                                   "4294967296u",
                                   "9223372036854775808",
                                   "+5",
                                   "1.5.5",
                                   "1e999",
                                   "0x10",
                                   "nan",
                                   "nan(7ff0000000000000)",
                                   "nan(7ff8)",
                                   "nan((((((((((((((((((",
                                   "<a",
                                   "<a%2",
                                   "<a%2g>",
                                   "<a'b>",
                                   "<a\nb>",
                                   "#0",
                                   "#0g",
                                   "#0a0",
                                   "@",
                                   "@1970",
                                   "P",
                                   "-",
                                   "{0}",
                                   "{00000000-0000-0000-0000-000000000000",
                                   "]",
                                   ")",
                                   ",",
                                   "[",
                                   "[,",
                                   "[1,]",
                                   "[1 2",
                                   "[1)",
                                   "[1;",
                                   "[0: 1]",
                                   "[2: 1]",
                                   "[2: 1, 2, 3]",
                                   "[4294967296: 1]",
                                   "[1u: 1]",
                                   "(",
                                   "(1",
                                   "(1]",
                                   "!"}) {
        for (unsigned int bufferSize : {1u, 64u}) {
            std::string const code = code_of([&] {
                read_text_form(
                    text,
                    [](Reader & reader) {
                        read_anything(reader);
                        reader.read_null(); // there is none: names the fault that stopped the walk
                    },
                    bufferSize);
            });
            EXPECT_EQ(code.substr(0, 22), "error.vxserialize.data") << text;
        }
    }
    try {
        read_text_form("[2: <ab>, 5]", [](Reader & reader) {
            reader.begin_list();
            (void)(reader.has_next() && reader.read_string_key() == vxcore::StringKey("ab"));
            (void)(reader.has_next() && reader.read_bool());
        });
        FAIL();
    } catch (vxcore::ErrorException const & e) {
        EXPECT_STREQ(e.what(), "Expected a boolean at byte 10 and found an integer");
    }
}

TEST(TextWriter, WantsToBeClosedAndThenTakesNothing) {
    StringTarget target;
    TextWriter writer(target, {});
    writer.begin_record();
    EXPECT_EQ(code_of([&] { writer.close(); }), "error.vxserialize.usage");
    writer.end_record();
    writer.close();
    writer.close();
    EXPECT_EQ(target.text, "()");
    EXPECT_EQ(code_of([&] { writer << 1; }), "error.vxserialize.usage");
    EXPECT_EQ(code_of([&] { writer.begin_list(0); }), "error.vxserialize.usage");
}

} // namespace
