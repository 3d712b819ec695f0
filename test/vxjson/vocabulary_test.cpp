#include "support/grouping_locale.h"

#include "vxjson/vxjson.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

namespace {

using namespace vxjson;

TEST(Vocabulary, KindsPrintTheirNameOrTheirNumber) {
    std::ostringstream stream;
    stream.imbue(vxtest::grouping_locale());
    for (int const number : {0, 6, 7, 8, 13, 14, -1, 99999}) {
        stream << static_cast<EToken>(number) << ' ' << static_cast<Reader::Value::EType>(number)
               << '\n';
    }
    EXPECT_EQ(stream.str(), "eToken_Unknown Root\neToken_StringBegin String\n"
                            "eToken_StringEnd ##InvalidType(7)##\n"
                            "eToken_CharData ##InvalidType(8)##\n"
                            "eToken_Punctuator ##InvalidType(13)##\n"
                            "##InvalidToken(14)## ##InvalidType(14)##\n"
                            "##InvalidToken(-1)## ##InvalidType(-1)##\n"
                            "##InvalidToken(99999)## ##InvalidType(99999)##\n");
}

TEST(Vocabulary, SlicesCheckPositionsAndStartAtTheirOffset) {
    StringSlice const slice("abcdef", 2, 3);
    EXPECT_EQ(slice.view(), "cde");
    EXPECT_EQ(slice[2], 'e');
    EXPECT_THROW(slice[3], std::out_of_range);
    try {
        (void)StringSlice()[0];
        ADD_FAILURE() << "nothing was raised";
    } catch (std::out_of_range const & e) {
        EXPECT_STREQ(e.what(), "StringSlice");
    }
}

TEST(Vocabulary, FortyTwoWordsAreReserved) {
    std::istringstream words(
        "break do instanceof typeof case else new var catch finally return void continue for "
        "switch while debugger function this with default if throw delete in try class enum "
        "extends super const export import implements let private public yield interface package "
        "protected static");
    int count = 0;
    for (std::string word; words >> word; ++count) {
        EXPECT_TRUE(is_reserved_word(word)) << word;
        EXPECT_FALSE(is_reserved_word(word + "s")) << word;
    }
    EXPECT_EQ(count, 42);
    for (char const * const word : {"", "Class", "typeOf", "true", "false", "null", "{", "zebra"}) {
        EXPECT_FALSE(is_reserved_word(word)) << word;
    }
}

} // namespace
