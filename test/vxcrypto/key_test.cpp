// The rule under test: key bytes stay in one place and are wiped before its memory is freed.

#include "openssl_calls.h"
#include "support/expect_error.h"
#include "vectors.h"

#include "vxcrypto/key.h"

#include <stdexcept>

namespace {

using namespace vxtest;
using vxcrypto::Key;

TEST(Key, WipesItsWholeBufferAsSoonAsItIsReplaced) {
    for (auto const & [size, capacity] : {std::pair(0u, 0u), {1u, 8u}, {8u, 8u}, {9u, 16u}}) {
        Key key(size);
        EXPECT_EQ(key.size(), size);
        EXPECT_EQ(key.capacity(), capacity);
        EXPECT_EQ(key.data() == nullptr, size == 0);
        EXPECT_EQ(std::string(reinterpret_cast<char const *>(key.data()), capacity),
                  std::string(capacity, '\0'));
        Wiped const buffer = {key.data(), capacity};
        openssl_calls() = {};
        key = Key();
        ASSERT_EQ(openssl_calls().wipes, size == 0 ? 0u : 1u) << size;
        EXPECT_EQ(openssl_calls().wiped[0].data, buffer.data);
        EXPECT_EQ(openssl_calls().wiped[0].size, buffer.size);
    }
    EXPECT_THROW(Key(0xFFFFFFF9u), std::length_error); // the capacity would be 0
    EXPECT_THROW(Key(nullptr, 1), std::invalid_argument);
    EXPECT_TRUE(Key(nullptr, 0).empty());
}

TEST(Key, MovesItsBufferClonesWhenAskedAndComparesAllBytes) {
    Key source("0123456789", 10);
    void const * const place = source.data();
    Key moved(std::move(source));
    Key taken(moved.transfer());
    EXPECT_TRUE(moved.empty());
    EXPECT_EQ(moved.data(), nullptr);
    EXPECT_EQ(moved.capacity(), 0u);
    EXPECT_TRUE(source.equal(Key()));
    Key & same = taken;
    taken = std::move(same);
    EXPECT_EQ(taken.data(), place);
    Key clone = taken.clone();
    EXPECT_TRUE(clone.equal(taken));
    for (unsigned int i = 0; i < 10; ++i) {
        clone.mutable_data()[i] ^= 0x80;
        EXPECT_FALSE(clone.equal(taken)) << i;
        clone.mutable_data()[i] ^= 0x80;
    }
    EXPECT_FALSE(Key(8).equal(Key(7))); // equal buffers
}

TEST(Key, RandomBytesFillAllOfAKeyOrNoneIsMade) {
    for (unsigned int const bits : {128u, 256u}) {
        Key ever(bits / 8); // bits that are 1 in one of the keys at least
        for (int i = 0; i < 64; ++i) {
            Key const key = Key::random(bits);
            ASSERT_EQ(key.size(), bits / 8);
            for (unsigned int at = 0; at < key.size(); ++at) {
                ever.mutable_data()[at] |= key.data()[at];
            }
        }
        EXPECT_EQ(std::string(reinterpret_cast<char const *>(ever.data()), ever.size()),
                  std::string(bits / 8, '\xff'));
    }
    EXPECT_EQ(Key::random().size(), 32u);
    expect_error([] { (void)Key::random(32); }, vxcore::ErrorCode("error.vxcrypto.key.size", true),
                 "A random key has 128 or 256 bits, not 32");
    openssl_calls() = {};
    openssl_calls().refuse = true;
    EXPECT_THROW((void)Key::random(), vxcore::ErrorException);
    openssl_calls() = {};
}

} // namespace
