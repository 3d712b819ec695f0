#include "forms.h"
#include "support/expect_error.h"

#include <charconv>
#include <cmath>
#include <random>

namespace {

using namespace vxtest;

TEST(TextForm, ReadsAndWritesTheExampleOfThePage) {
    std::string const text = page_block("text.md", "text");
    EXPECT_EQ(text_to_text(text), text);
    EXPECT_EQ(to_hex(text_to_binary(text)), "A304706F7274E1901F05726174696FF3000000000000E03F"
                                            "0573696E6365F4401163BC43CA3F00");
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
    EXPECT_EQ(text_to_binary(text, 3), "\xDD" + from_hex("0001") + bytes);
}

TEST(TextForm, DoublesHaveTheirShortestText) {
    std::mt19937_64 random(20261125);
    for (int i = 0; i < 100'000; ++i) {
        // Up to 20 digits, times 10^-9 to 10^9.
        double const digits = static_cast<double>(random() >> 4 * (random() % 16));
        double number = digits * std::pow(10, static_cast<double>(random() % 19) - 9);
        number = i % 3 == 0 ? std::nextafter(number, 0) : i % 3 == 1 ? -number : number;
        char text[32];
        std::string expected(text, std::to_chars(text, text + 32, number).ptr);
        expected += expected.find_first_of(".e") == expected.npos ? ".0" : "";
        EXPECT_EQ(write_text_form([&](Writer & w) { w << number; }), expected);
    }
}

TEST(TextForm, IndentsListsOnDemand) {
    auto const write = [](Writer & w) {
        w.begin_list(2), w << "a" << 1, w.next_list_item();
        w << "b", w.begin_list(1), w << 2, w.end_list(), w.begin_list(0), w.end_list();
        w.end_list();
    };
    std::string const text = "[2:\n  <a> 1,\n  <b> [\n    2\n  ] []\n]";
    EXPECT_EQ(write_text_form(write, 2), text);
}

TEST(TextForm, TakesMoreThanItWrites) {
    EXPECT_EQ(text_to_text("\t[ 2: 1,\r\n 2 ]1<x>#AbCd<%c3%A4>[1: 007]nan(FFF0000000000001) "),
              "[2: 1, 2] 1 <x> #abcd <%c3%a4> [7] nan(fff0000000000001)");
    read_text_form("[5, 6]", [](Reader & reader) { // a list may announce none
        EXPECT_EQ(reader.begin_list(), 0u);
        EXPECT_EQ(reader.read_integer(), 5);
        EXPECT_TRUE(reader.has_next());
        EXPECT_EQ(reader.read_integer(), 6);
        EXPECT_FALSE(reader.has_next());
    });
}

TEST(TextForm, RefusesWhatIsNone) {
    std::istringstream bad(
        "nul~NULL~5uu~-5u~4294967296u~9223372036854775808~+5~1.5.5~1e999~0x10~nan~nan(7ff8)~"
        "nan(7ff0000000000000)~nan((((((((((((((((((~<a~<a%2~<a%2g>~<a'b>~<a\nb>~#0~#0g~#0a0~@~"
        "@1970~P~-~{0}~{00000000-0000-0000-0000-000000000000~]~)~,~[~[,~[1,]~[1 2~[1)~[1;~[0: 1]~"
        "[2: 1]~[2: 1, 2, 3]~[4294967296: 1]~[1u: 1]~(~(1~(1]~!~" +
        std::string(200, '7') + "~0." + std::string(126, '0'));
    for (std::string text; std::getline(bad, text, '~');) {
        for (unsigned int const bufferSize : {1u, 64u}) {
            std::string const code = code_of([&] { text_to_binary(text, bufferSize); });
            EXPECT_EQ(code.substr(0, 22), "error.vxserialize.data") << text;
        }
    }
    auto const read = [](Reader & reader) {
        reader.begin_record();
        EXPECT_EQ(reader.read_string_key().value(), "ab");
        (void)reader.read_bool();
    };
    expect_error([&] { read_text_form("(<ab> 5)", read); }, error::vxserialize_data_type,
                 "Expected a boolean at byte 6 and found an integer");
}

TEST(TextWriter, WantsToBeClosedAndThenTakesNothing) {
    std::string text;
    StringTarget target(text);
    TextWriter writer(target, {});
    writer.begin_record();
    EXPECT_EQ(code_of([&] { writer.close(); }), "error.vxserialize.usage");
    writer.end_record();
    writer.close();
    writer.close();
    EXPECT_EQ(text, "()");
    EXPECT_EQ(code_of([&] { writer << 1; }), "error.vxserialize.usage");
}

TEST(TextWriter, TakesNothingAfterItsTargetFailed) {
    struct Target final : TextWriter::ITextTarget {
        void write_char(char) override {}

        void write_data(char const *, unsigned int) override { throw std::bad_alloc(); }
    } target;

    for (auto const call : std::initializer_list<void (*)(TextWriter &)>{
             [](TextWriter & w) { w << "more"; }, [](TextWriter & w) { w.begin_list(0); },
             [](TextWriter & w) { w.begin_record(); }, [](TextWriter & w) { w.next_list_item(); },
             [](TextWriter & w) { w.end_list(); }, [](TextWriter & w) { w.close(); }}) {
        TextWriter writer(target, {});
        writer.begin_list(2);
        EXPECT_THROW(writer << std::string(300, 'x'), std::bad_alloc);
        EXPECT_EQ(code_of([&] { call(writer); }), "error.vxserialize.usage");
        EXPECT_EQ(code_of([&] { writer.close(); }), "error.vxserialize.usage");
    }
}

} // namespace
