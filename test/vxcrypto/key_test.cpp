// The rule under test: key bytes lie at one place, and are wiped before that place is given back.

#include "openssl_watch.h"
#include "vectors.h"

#include "vxcrypto/key.h"

#include <stdexcept>

namespace {

using namespace vxtest;
using vxcrypto::Key;

std::string bytes_of(Key const & key) {
    return {reinterpret_cast<char const *>(key.data()), key.size()};
}

TEST(Key, WipesItsWholeBufferBeforeItIsFreed) {
    for (auto const & [size, capacity] : {std::pair(0u, 0u), {1u, 8u}, {8u, 8u}, {9u, 16u}}) {
        Key key(size);
        EXPECT_EQ(key.size(), size);
        EXPECT_EQ(key.capacity(), capacity);
        EXPECT_EQ(key.data() == nullptr, size == 0);
        EXPECT_EQ(std::string(reinterpret_cast<char const *>(key.data()), capacity),
                  std::string(capacity, '\0'));
        void const * const place = key.data();
        OpensslWatch watch;
        key = Key(); // at once, not when the other key goes
        ASSERT_EQ(watch.calls.wiped.size(), size == 0 ? 0u : 1u) << size;
        if (size != 0) {
            EXPECT_EQ(watch.calls.wiped[0].data, place);
            EXPECT_EQ(watch.calls.wiped[0].size, capacity);
        }
    }
}

TEST(Key, MovesWithoutCopyingAndClonesWhenAsked) {
    Key source("0123456789", 10);
    void const * const place = source.data();
    Key moved(std::move(source));
    Key taken(moved.transfer());
    EXPECT_TRUE(source.empty() && moved.empty());
    EXPECT_EQ(source.data(), nullptr);
    EXPECT_EQ(source.capacity() + moved.capacity(), 0u);
    EXPECT_EQ(taken.data(), place);
    Key & same = taken;
    taken = std::move(same);
    EXPECT_EQ(bytes_of(taken), "0123456789");
    Key clone = taken.clone();
    clone.mutable_data()[0] = 'x';
    EXPECT_EQ(bytes_of(taken), "0123456789");
    EXPECT_EQ(bytes_of(clone), "x123456789");
}

TEST(Key, ComparesSizesAndAllBytes) {
    Key const key("0123456789", 10);
    EXPECT_TRUE(key.equal(Key("0123456789", 10)));
    EXPECT_TRUE(Key().equal(Key(nullptr, 0)));
    for (char const * const other : {"x123456789", "012345678x", "012345678"}) {
        EXPECT_FALSE(key.equal(Key(other, size_of(other)))) << other;
    }
    EXPECT_FALSE(Key(8).equal(Key(7))); // equal buffers
}

TEST(Key, RefusesASizeWhoseCapacityIsBeyondTheCounter) {
    EXPECT_THROW(Key(0xFFFFFFF9u), std::length_error);
    EXPECT_THROW(Key(nullptr, 0xFFFFFFFFu), std::length_error);
}

} // namespace
