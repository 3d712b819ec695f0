// The rule under test: which memory a blob owns, and how it takes bytes from streams.

#include "support/allocation.h"
#include "support/expect_error.h"
#include "support/streams.h"

#include "vxattribute/vxattribute.h"

#include <algorithm>

namespace {

using namespace vxattribute;
using vxtest::expect_error;
using vxtest::StringStream;

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

TEST(BinaryValue, OrderTakesBytesAsUnsigned) {
    unsigned char const high[] = {0x80, 1}, low[] = {0x7f};
    EXPECT_EQ(BinaryValue(high, 1).compare(BinaryValue(low, 1)), 1);
    EXPECT_EQ(BinaryValue(high, 1).compare(BinaryValue(high, 2)), -1);
    EXPECT_EQ(BinaryValue().compare(BinaryValue(0)), 0);
}

TEST(BinaryValue, StreamsOfKnownSizeAreReadOnceAndLimited) {
    StringStream exact(std::string(0x1000000, 'x'), true);
    EXPECT_EQ(BinaryValue(exact).size(), 0x1000000u);
    EXPECT_EQ(exact.reads, 1);
    StringStream shorter("abc", true, 7);
    BinaryValue value(shorter);
    EXPECT_EQ(value, BinaryValue(reinterpret_cast<unsigned char const *>("abc"), 3));
    StringStream tooLarge("", true, 0x1000001);
    auto const info =
        expect_error([&] { value.set(tooLarge); }, error::vxattribute_value_binary_size,
                     "Attribute value BLOB cannot be larger than 16777216 bytes.",
                     "vxattribute::BinaryValue::set()");
    EXPECT_EQ(*info->params().find_value("size"), "16777217");
    EXPECT_EQ(tooLarge.reads, 0);
    EXPECT_EQ(value.size(), 3u);
}

TEST(BinaryValue, StreamsOfUnknownSizeAreReadToTheFirstShortRead) {
    std::pair<unsigned int, int> const readsOfSize[] = {
        {0, 1}, {4095, 1}, {4096, 2}, {4097, 2}, {8192, 3}, {20 * 1024 * 1024, 14}};
    for (auto const & [size, reads] : readsOfSize) {
        std::string bytes(size, '\0');
        for (unsigned int i = 0; i < size; ++i) {
            bytes[i] = static_cast<char>(i % 251);
        }
        StringStream stream(bytes, false);
        BinaryValue const value(stream);
        EXPECT_EQ(stream.reads, reads) << size;
        auto const * const data = reinterpret_cast<char const *>(value.data());
        EXPECT_TRUE(std::string_view(data, value.size()) == bytes) << size;
    }
}

TEST(BinaryValue, FailuresLeaveTheOldBytes) {
    unsigned char const bytes[] = {1, 2, 3};
    for (int change = 0; change < 4; ++change) {
        BinaryValue value(bytes, 3);
        unsigned long const failures = vxtest::fail_each_allocation(
            [&] {
                StringStream stream(std::string(9000, 'x'), change == 0);
                change < 2    ? value.set(stream)
                : change == 2 ? value.resize(100)
                              : value.set(value.data(), 2);
            },
            [&] { ASSERT_EQ(value, BinaryValue(bytes, 3)); });
        EXPECT_GT(failures, 1u) << "that of the stream's text and one more";
    }
}

} // namespace
