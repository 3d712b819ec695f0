#include "vxcore/uuid.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using vxcore::Uuid;

constexpr Uuid sample({0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99, 0xaa, 0xbb, 0xcc,
                       0xdd, 0xee, 0xff});

TEST(Uuid, HasTwoTextFormsThatAreReadBackInEitherCase) {
    EXPECT_EQ(sample.as_string(0), "00112233-4455-6677-8899-aabbccddeeff");
    EXPECT_EQ(sample.as_string(1), "00112233445566778899aabbccddeeff");
    EXPECT_EQ((std::ostringstream() << sample).str(), "00112233-4455-6677-8899-aabbccddeeff");
    for (char const * text :
         {"00112233-4455-6677-8899-aabbccddeeff", "00112233-4455-6677-8899-AABBccddEEFF",
          "00112233445566778899aabbccddeeff", "00112233445566778899AABBCCDDEEFF"}) {
        Uuid read;
        EXPECT_TRUE(Uuid::parse(text, read)) << text;
        EXPECT_EQ(read, sample) << text;
    }
}

TEST(Uuid, RefusesOtherTextsAndKeepsTheTarget) {
    for (char const * text :
         {"", "00112233-4455-6677-8899-aabbccddeef", "00112233-4455-6677-8899-aabbccddeefff",
          "0011223-34455-6677-8899-aabbccddeeff", "00112233445566778899aabbccddeef",
          "00112233445566778899aabbccddeefg", "{0112233445566778899aabbccddeef}",
          "00112233-445566778899aabbccddeeff-00", "+0112233445566778899aabbccddeeff"}) {
        Uuid read = sample;
        EXPECT_FALSE(Uuid::parse(text, read)) << text;
        EXPECT_EQ(read, sample) << text;
    }
}

TEST(Uuid, RandomOnesHaveTheirVersionAndElseFreeBits) {
    Uuid::BinaryData always = Uuid::random().data(), ever = always; // bits that are 1
    for (int i = 0; i < 64; ++i) {
        Uuid const uuid = Uuid::random();
        for (std::size_t at = 0; at < always.size(); ++at) {
            always[at] &= uuid.data()[at];
            ever[at] |= uuid.data()[at];
        }
    }
    EXPECT_EQ(Uuid(always).as_string(0), "00000000-0000-4000-8000-000000000000");
    EXPECT_EQ(Uuid(ever).as_string(0), "ffffffff-ffff-4fff-bfff-ffffffffffff");
}

TEST(Uuid, OrdersAndHashesByUnsignedBytes) {
    EXPECT_LT(sample, Uuid({0x80}));
    EXPECT_EQ(sample.hash(), 3210843768u);
    Uuid cleared = sample;
    cleared.clear();
    EXPECT_EQ(cleared.as_string(0), "00000000-0000-0000-0000-000000000000");
}

} // namespace
