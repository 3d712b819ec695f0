#include "support/grouping_locale.h"

#include "vxjson/vxjson.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

namespace {

using namespace vxjson;

TEST(Token, PrintsItsNameOrItsNumber) {
    std::ostringstream stream;
    stream.imbue(vxtest::grouping_locale());
    for (int const number : {0, 3, 8, 13, 14, -1, 99999}) {
        stream << static_cast<EToken>(number) << ' ';
    }
    EXPECT_EQ(stream.str(), "eToken_Unknown eToken_Error eToken_CharData eToken_Punctuator "
                            "##InvalidToken(14)## ##InvalidToken(-1)## ##InvalidToken(99999)## ");
}

TEST(StringSlice, ChecksPositionsAndStartsAtItsOffset) {
    StringSlice const slice("abcdef", 2, 3);
    EXPECT_EQ(slice.view(), "cde");
    EXPECT_EQ(slice[2], 'e');
    for (StringSlice const & bad : {StringSlice(slice.data(), 0, 0), StringSlice()}) {
        try {
            (void)bad[0];
            ADD_FAILURE() << "nothing was raised";
        } catch (std::out_of_range const & e) {
            EXPECT_STREQ(e.what(), "StringSlice");
        }
    }
}

TEST(ReservedWords, AreFortyTwoAndExact) {
    std::istringstream words(
        "break do instanceof typeof case else new var catch finally return void continue for "
        "switch "
        "while debugger function this with default if throw delete in try class enum extends super "
        "const export import implements let private public yield interface package protected "
        "static");
    int count = 0;
    for (std::string word; words >> word; ++count) {
        EXPECT_TRUE(is_reserved_word(word)) << word;
        EXPECT_FALSE(is_reserved_word(word + "s")) << word;
        EXPECT_FALSE(is_reserved_word(word.substr(0, word.size() - 1) + "#")) << word;
    }
    EXPECT_EQ(count, 42);
    for (char const * const word : {"", "Class", "typeOf", "true", "false", "null", "instanceofs",
                                    "{", "a", "zebra", "\xC3\xA4"}) {
        EXPECT_FALSE(is_reserved_word(word)) << word;
    }
}

} // namespace
