// The rule under test: payloads are shared, forms without a type name clear it, and order, equality
// and hash treat values without payload as documented.

#include "support/streams.h"

#include "vxattribute/vxattribute.h"

namespace {

using namespace vxattribute;
using vxtest::list_of;

TEST(SerializedValue, FormsWithoutATypeNameClearIt) {
    SerializedValue value("x", list_of("abc"));
    value.set(list_of("other"));
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
    std::string bytes = vxtest::bytes_of(value.memory_list());
    SerializedValue const borrowed("again", vxserialize::MemoryReader(vxcore::ByteView(bytes)));
    bytes.assign(bytes.size(), '?');
    EXPECT_EQ(borrowed, again);
    value.set(reader);
    EXPECT_EQ(value.type(), "");
    EXPECT_EQ(SerializedValue(writer), value);
}

TEST(SerializedValue, ValuesWithoutPayloadCompareAlike) {
    SerializedValue const null("a", vxtest::ListPtr()), empty("b", list_of("")),
        full("", list_of("x"));
    EXPECT_TRUE(null.empty());
    EXPECT_TRUE(empty.empty());
    EXPECT_EQ(null.compare(empty), 0);
    EXPECT_FALSE(null == empty);
    EXPECT_TRUE(null == SerializedValue("a", list_of("")));
    EXPECT_EQ(null.compare(full), -1);
    EXPECT_EQ(full.compare(empty), 1);
    EXPECT_EQ(null.hash(), 0u);
    EXPECT_EQ(SerializedValue().memory_reader().next_type(), vxserialize::eElement_None);
    EXPECT_LT(SerializedValue("a", list_of("x")).compare(SerializedValue("b", list_of("x"))), 0);
    EXPECT_EQ(SerializedValue("a", list_of("xyz", 1)), SerializedValue("a", list_of("xyz")));
}

TEST(SerializedValue, HashMixesPayloadAndTypeNameAndFollowsMoves) {
    // 'x' is 120 and 'a' is 97: 120 ^ (97 + (120 << 6) + (120 >> 2) + 0x9E3779B9)
    EXPECT_EQ(SerializedValue("a", list_of("x")).hash(), 0x9e379840u);
    // This name makes it 0, which means "not computed": the size takes its place.
    EXPECT_EQ(SerializedValue("10343103133324", list_of("xyz")).hash(), 3u);
    SerializedValue value("type", list_of("payload"));
    unsigned int const hash = value.hash();
    EXPECT_NE(hash, 0u);
    SerializedValue const copy = value;
    SerializedValue const moved = std::move(value);
    EXPECT_EQ(value.hash(), 0u);
    EXPECT_EQ(moved.hash(), hash);
    EXPECT_EQ(copy.hash(), hash);
    value.set("type", list_of("payloae"));
    EXPECT_NE(value.hash(), hash);
    value.clear();
    EXPECT_EQ(value.type(), "");
    EXPECT_EQ(value.memory_list(), nullptr);
}

} // namespace
