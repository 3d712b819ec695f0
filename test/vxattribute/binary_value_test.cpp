// The rule under test: what a blob owns, and how it takes bytes from streams.

#include "support/allocation.h"
#include "support/expect_error.h"

#include "vxattribute/vxattribute.h"
#include "vxcore/read_stream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace {

using namespace vxattribute;

/// Gives `left` bytes of a pattern; says its size only when asked to, and may promise too much.
class PatternStream final : public vxcore::IReadStream {
  public:
    PatternStream(unsigned int left, long long announced) : m_left(left), m_announced(announced) {}

    unsigned int read(void * buffer, unsigned int size) override {
        ++m_reads;
        unsigned int const count = std::min(size, m_left);
        for (unsigned int i = 0; i < count; ++i) {
            static_cast<unsigned char *>(buffer)[i] =
                static_cast<unsigned char>(m_position++ % 251);
        }
        m_left -= count;
        return count;
    }

    unsigned int skip(unsigned int size) override { return m_left -= std::min(size, m_left); }

    long long size() const override { return m_announced; }

    int reads() const { return m_reads; }

  private:
    unsigned int m_left;
    long long m_announced;
    unsigned int m_position = 0;
    int m_reads = 0;
};

TEST(BinaryValue, NullDataTellsThatThereNeverWereBytes) {
    unsigned char const byte = 9;
    EXPECT_EQ(BinaryValue(0).data(), nullptr);
    EXPECT_EQ(BinaryValue(&byte, 0).data(), nullptr);
    BinaryValue value(10);
    EXPECT_TRUE(std::all_of(value.data(), value.data() + 10, [](auto b) { return b == 0; }));
    value.set(&byte, 0);
    EXPECT_TRUE(value.empty());
    EXPECT_NE(value.data(), nullptr);
    value.resize(4);
    value.resize(0);
    EXPECT_EQ(value.data(), nullptr);
    value.set(&byte, 1);
    BinaryValue const taken(std::move(value));
    EXPECT_EQ(value.data(), nullptr);
    EXPECT_EQ(value.size(), 0u);
    EXPECT_EQ(taken.data()[0], 9);
}

TEST(BinaryValue, ResizeKeepsTheFrontAndZeroesTheRest) {
    unsigned char const bytes[] = {1, 2, 3};
    unsigned char const longer[] = {1, 2, 3, 0, 0};
    BinaryValue value(bytes, 3);
    value.resize(5);
    EXPECT_EQ(value, BinaryValue(longer, 5));
    value.resize(2);
    EXPECT_EQ(value, BinaryValue(bytes, 2));
}

TEST(BinaryValue, AssignmentOfEqualSizesReusesTheBlock) {
    BinaryValue a(64);
    unsigned char const * const block = a.data();
    BinaryValue b(64);
    b.data()[3] = 7;
    EXPECT_EQ(vxtest::count_allocations([&] { a = b; }), 0u);
    EXPECT_EQ(a.data(), block);
    EXPECT_EQ(a.data()[3], 7);
    a = static_cast<BinaryValue const &>(a);
    EXPECT_EQ(a, b);
}

TEST(BinaryValue, OrderAndHashTakeBytesAsUnsigned) {
    unsigned char const high[] = {0x80, 1}, low[] = {0x7f};
    EXPECT_EQ(BinaryValue(high, 1).compare(BinaryValue(low, 1)), 1);
    EXPECT_EQ(BinaryValue(high, 1).compare(BinaryValue(high, 2)), -1);
    EXPECT_EQ(BinaryValue().compare(BinaryValue(0)), 0);
    EXPECT_EQ(BinaryValue(high, 1).hash(), 128u);
    EXPECT_EQ(BinaryValue(high, 2).hash(), 128u * 5 + 1);
    EXPECT_EQ(BinaryValue().hash(), 0u);
}

TEST(BinaryValue, StreamsOfKnownSizeAreReadOnceAndLimited) {
    PatternStream exact(0x1000000, 0x1000000);
    EXPECT_EQ(BinaryValue(exact).size(), 0x1000000u);
    EXPECT_EQ(exact.reads(), 1);
    PatternStream shorter(3, 10);
    BinaryValue value(shorter);
    EXPECT_EQ(value.size(), 3u);
    EXPECT_EQ(value.data()[2], 2);
    PatternStream tooLarge(0x1000001, 0x1000001);
    auto const info =
        vxtest::expect_error([&] { value.set(tooLarge); }, error::vxattribute_value_binary_size,
                             "Attribute value BLOB cannot be larger than 16777216 bytes.");
    EXPECT_EQ(*info->params().find_value("size"), "16777217");
    EXPECT_EQ(tooLarge.reads(), 0);
    EXPECT_EQ(value.size(), 3u);
}

TEST(BinaryValue, StreamsOfUnknownSizeAreReadToTheFirstShortRead) {
    std::map<unsigned int, int> const readsOfSize = {{0, 1},    {4095, 1}, {4096, 2},
                                                     {4097, 2}, {8192, 3}, {20 * 1024 * 1024, 14}};
    for (auto const & [size, reads] : readsOfSize) {
        PatternStream stream(size, -1);
        BinaryValue const value(stream);
        ASSERT_EQ(value.size(), size);
        EXPECT_EQ(stream.reads(), reads) << size;
        for (unsigned int i : {0u, size / 2, size - 1}) {
            ASSERT_TRUE(size == 0 || value.data()[i] == i % 251);
        }
    }
}

TEST(BinaryValue, FailuresLeaveTheOldBytes) {
    unsigned char const bytes[] = {1, 2, 3};
    BinaryValue value(bytes, 3);
    for (long long announced : {-1LL, 9000LL}) {
        PatternStream stream(9000, announced);
        vxtest::fail_each_allocation(
            [&] {
                stream = PatternStream(9000, announced);
                BinaryValue copy = value;
                copy.set(stream);
            },
            [&] { EXPECT_EQ(value.size(), 3u); });
    }
    vxtest::fail_allocation(1);
    EXPECT_THROW(value.resize(100), std::bad_alloc);
    vxtest::fail_allocation(1);
    EXPECT_THROW(value.set(value.data(), 2), std::bad_alloc);
    vxtest::fail_allocation(0);
    EXPECT_EQ(value, BinaryValue(bytes, 3));
}

} // namespace
