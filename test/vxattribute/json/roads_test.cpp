#include "support/streams.h"

#include "vxattribute/json/roads.h"

#include <cstdlib>

namespace {

using namespace vxattribute;

/// Makes JSON texts that are mostly right, of parts in which the two ways could differ.
class TextMaker {
  public:
    explicit TextMaker(std::mt19937 & random) : m_random(random) {}

    std::string document() {
        std::string text = one_of({"", " ", "\xEF\xBB\xBF"}, {"[]", "5"});
        do {
            text += random(3) == 0 ? array(0) : object(0);
        } while (random(20) == 0);
        return text + one_of({"", "\n", "  \r\n"}, {"]", "x"});
    }

  private:
    unsigned int random(unsigned int n) { return static_cast<unsigned int>(m_random()) % n; }

    std::string one_of(std::initializer_list<char const *> choices) {
        return choices.begin()[random(static_cast<unsigned int>(choices.size()))];
    }

    /// One of the choices; in one of 60 calls one that the direct way leaves to the other.
    std::string one_of(std::initializer_list<char const *> choices,
                       std::initializer_list<char const *> odd) {
        return one_of(random(60) == 0 ? odd : choices);
    }

    std::string space() {
        return random(4) != 0 ? "" : one_of({" ", "\n    ", "\t\r\n\n  "}, {" // c\n", "/**/"});
    }

    std::string name() {
        return one_of({"\"a\"", "\"b\"", "\"id\"", "\"a name of more than 16 bytes\"",
                       "\"a name of other than 16 bytes\"", "\"a\\u0062\"", "\"q\\\"q\"", "\"q\"",
                       "\"\\n\"", "\"\xC3\xA9\"", "\"vxserialize\""},
                      {"\"class\"", "\"\"", "d", "\"\n\"", "\"\xFF\""});
    }

    std::string scalar(unsigned int kind) {
        switch (kind) {
        case 0:
            return one_of({"0", "-0", "7", "-123456789012345", "9007199254740993", "1e2", "-0.0",
                           "18446744073709551615", "123456789012345678901234567890", "0.5", "1.0",
                           "0.30000000000000004", "9e22", "12345.678e-3", "2.5E+3", "4e-324",
                           "9007199254740993e-3"},
                          {"01", "1.", "-", "1e-400", "1e400", ".5", "1e", "5x"});
        case 1:
            return one_of({"\"\"", "\"x\"", "\"a text of more than sixteen bytes\"",
                           "\"\\n\\u00e9\"", "\"\\ud83d\\ude00 and more\"", "\"\xE2\x82\xAC\""},
                          {"\"\\ud83d\"", "\"\xFF bytes\"", "\"\\q\"", "'x'", "\"tab\tin it\""});
        case 2:
            return one_of({"true", "false"}, {"tru", "falsey"});
        default:
            return one_of({"null", "{\"vxserialize\":\"0.5\"}", "{\"vxserialize\":\"-7\"}",
                           "{ \"vxserialize\" : \"3u [<x>]\" }",
                           "{\"vxserialize\":\"4u [1.5,\\u0032.5]\"}", "{\"vxserialize\":\"1 2\"}"},
                          {"{\"vxserialize\":\"9223372036854775808\"}", "nul", "[[]]",
                           "{\"vxserialize\":\"1e999\"}", "{\"vxserialize\":\"1\",\"a\":2}"});
        }
    }

    std::string comma() { return space() + one_of({","}, {"", ",,"}) + space(); }

    std::string array(unsigned int depth) {
        std::string text = "[" + space();
        unsigned int const kind = random(5);
        for (unsigned int left = random(5); left != 0; --left) {
            text += kind == 4 && depth < 5 ? object(depth + 1)
                                           : scalar(random(60) == 0 ? random(4) : kind % 4);
            text += left == 1 ? space() + one_of({""}, {","}) : comma();
        }
        return text + "]";
    }

    std::string object(unsigned int depth) {
        std::string text = "{" + space();
        for (unsigned int left = random(6); left != 0; --left) {
            unsigned int const kind = random(depth < 5 ? 8 : 4);
            text += name() + space() + ":" + space();
            text += kind < 4 ? scalar(kind) : kind < 6 ? object(depth + 1) : array(depth + 1);
            text += left == 1 ? space() + one_of({""}, {","}) : comma();
        }
        return text + "}";
    }

    std::mt19937 & m_random;
};

/// Runs longer with VX_JSON_TEXTS in the environment: the number of texts.
TEST(JsonRoads, AgreeInEachValueErrorAndPlace) {
    char const * const wanted = std::getenv("VX_JSON_TEXTS");
    int const count = wanted == nullptr ? 10'000 : std::atoi(wanted);
    std::mt19937 random(20261125);
    TextMaker maker(random);
    for (int i = 0; i < count; ++i) {
        std::string text = maker.document();
        if (random() % 4 == 0) {
            vxtest::mutate(text, random, "{}[]\":, \n\\/-0e.", "1e400");
        }
        auto const flags = static_cast<unsigned int>(random());
        vxjson::Document::Options options;
        options.tokenizer.allow_comments = (flags & 3) == 0;
        options.tokenizer.allow_unquoted_names = (flags & 12) == 0;
        options.tokenizer.allow_single_quotes = (flags & 0x30) == 0;
        options.tokenizer.validate_utf8 = (flags & 0x40) != 0;
        options.tokenizer.max_depth = (flags & 0x380) == 0 ? 3 : 256;
        options.tokenizer.max_number_size = (flags & 0x1C00) == 0 ? 3 : 65536;
        options.reader.allow_reserved_names = (flags & 0x2000) != 0;
        vxtest::StringStream stream(text, false);
        ASSERT_EQ(vxtest::difference_of_roads(text, stream, options, flags >> 14 & 7), "")
            << "text " << i << ": " << text;
    }
}

} // namespace
