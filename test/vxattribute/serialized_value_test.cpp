// The rule under test: payloads are shared, forms without a type name clear it, and order, equality
// and hash treat values without payload as told.

#include "vxattribute/memory_list_order.h"
#include "vxattribute/vxattribute.h"
#include "vxserialize/memory_reader.h"
#include "vxserialize/memory_writer.h"

#include <gtest/gtest.h>

namespace {

using namespace vxattribute;
using impl::MemoryListPtr;

/// A list of the text, in segments of `piece` bytes.
MemoryListPtr list(std::string const & text, unsigned int piece = 100) {
    auto const result = vxserialize::MemoryList::create();
    for (std::size_t i = 0; i < text.size(); i += piece) {
        std::string const part = text.substr(i, piece);
        result->append(
            *vxserialize::MemoryList::create(part.data(), static_cast<unsigned>(part.size())));
    }
    return result;
}

TEST(MemoryListOrder, GoesByContentAndNotBySegments) {
    for (unsigned int piece : {1u, 2u, 3u, 100u}) {
        EXPECT_EQ(impl::compare_memory_lists(list("abcde"), list("abcde", piece)), 0);
        EXPECT_EQ(impl::hash_memory_list(list("abcde")),
                  impl::hash_memory_list(list("abcde", piece)));
        EXPECT_EQ(impl::compare_memory_lists(list("abcd\x80"), list("abcd\x7f", piece)), 1);
        EXPECT_EQ(impl::compare_memory_lists(list("abc", piece), list("abcd")), -1);
    }
    EXPECT_EQ(impl::compare_memory_lists(nullptr, list("")), 0);
    EXPECT_EQ(impl::compare_memory_lists(nullptr, list("a")), -1);
    EXPECT_EQ(impl::compare_memory_lists(list("a"), nullptr), 1);
    EXPECT_EQ(impl::hash_memory_list(nullptr), 0u);
    EXPECT_EQ(impl::hash_memory_list(list("\x80")), 0xffffff80u);
}

TEST(SerializedValue, FormsWithoutATypeNameClearIt) {
    SerializedValue value("x", list("abc"));
    value.set(list("other"));
    EXPECT_EQ(value.type(), "");
    EXPECT_EQ(value.size(), 5u);
    vxserialize::MemoryWriter writer;
    writer << 5 << "five";
    value.set("written", writer);
    EXPECT_EQ(value.type(), "written");
    vxserialize::MemoryReader reader = value.memory_reader();
    long long number = 0;
    reader >> number;
    EXPECT_EQ(number, 5);
    SerializedValue const again("again", reader);
    EXPECT_EQ(again.size(), value.size()) << "the whole list, wherever the reader stands";
    value.set(reader);
    EXPECT_EQ(value.type(), "");
    EXPECT_EQ(SerializedValue(writer), value);
}

TEST(SerializedValue, ValuesWithoutPayloadCompareAlike) {
    SerializedValue const null("a", MemoryListPtr()), empty("b", list("")), full("", list("x"));
    EXPECT_TRUE(null.empty() && empty.empty());
    EXPECT_EQ(null.compare(empty), 0);
    EXPECT_FALSE(null == empty);
    EXPECT_TRUE(null == SerializedValue("a", list("")));
    EXPECT_EQ(null.compare(full), -1);
    EXPECT_EQ(full.compare(empty), 1);
    EXPECT_EQ(null.hash(), 0u);
    EXPECT_EQ(SerializedValue().memory_reader().next_type(), vxserialize::eElement_None);
    EXPECT_LT(SerializedValue("a", list("x")).compare(SerializedValue("b", list("x"))), 0);
    EXPECT_EQ(SerializedValue("a", list("xyz", 1)), SerializedValue("a", list("xyz")));
}

TEST(SerializedValue, HashMixesPayloadAndTypeNameAndFollowsMoves) {
    // 'x' is 120 and 'a' is 97: 120 ^ (97 + (120 << 6) + (120 >> 2) + 0x9E3779B9)
    EXPECT_EQ(SerializedValue("a", list("x")).hash(), 0x9e379840u);
    SerializedValue value("type", list("payload"));
    unsigned int const hash = value.hash();
    EXPECT_NE(hash, 0u);
    SerializedValue const copy = value;
    SerializedValue const moved = std::move(value);
    EXPECT_EQ(value.hash(), 0u);
    EXPECT_EQ(moved.hash(), hash);
    EXPECT_EQ(copy.hash(), hash);
    value.set("type", list("payloae"));
    EXPECT_NE(value.hash(), hash);
    value.clear();
    EXPECT_EQ(value.type(), "");
    EXPECT_EQ(value.memory_list(), nullptr);
}

} // namespace
