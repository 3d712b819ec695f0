#include "forms.h"

namespace {

using namespace vxtest;

TEST(BinaryForm, WritesTheExampleOfThePage) {
    EXPECT_EQ(to_hex(text_to_binary("[2: <port> 8080, <host> <x>]")),
              to_hex(from_hex(page_block("binary.md", "hex"))));
}

TEST(BinaryForm, TakesAnyWidth) {
    std::string const bytes = from_hex("E10500 E7FFFFFFFFFFFFFFFF EA010000 DF01000000 61 DB01000000"
                                       "62 EF01000000 F0");
    for (unsigned int const segmentSize : {1u, 5u, 100u}) {
        EXPECT_EQ(binary_to_text(bytes, segmentSize), "5 -1 1u <a> #62 [null]");
    }
}

TEST(BinaryForm, KnowsItsVersionAndRefusesOthers) {
    EXPECT_EQ(binary_to_text(from_hex("FF01 45")), "-3");
    EXPECT_EQ(code_of([] { binary_to_text(from_hex("FF0245")); }),
              "error.vxserialize.data.version");
    EXPECT_EQ(code_of([] { binary_to_text("\xFF"); }), "error.vxserialize.data.version");
    for (char const * const hex : {"F945", "FEFF", "45FF01", "FF01FF01", "F8", "F7FF01F8"}) {
        EXPECT_EQ(code_of([&] { binary_to_text(from_hex(hex)); }).substr(0, 22),
                  "error.vxserialize.data");
    }
}

TEST(MemoryWriter, SnapshotsShareTheBytesAndStandStill) {
    MemoryWriter writer;
    writer.begin_list(2);
    writer << 1;
    MemoryReader const snapshot = writer.reader();
    writer.next_list_item();
    writer << std::string(200'000, 'x');
    writer.end_list();
    EXPECT_EQ(to_hex(bytes_of(snapshot.memory_list())), "A249");
    EXPECT_EQ(writer.size(), 200'006u);
    auto const * const first = snapshot.memory_list()->segment_read_iterator()->data();
    auto const list = writer.close_and_detach_memory_list();
    EXPECT_EQ(list->segment_read_iterator()->data(), first);
    EXPECT_EQ(list->size(), 200'006u);
    EXPECT_TRUE(writer.close_and_detach_memory_list()->empty());
    EXPECT_EQ(code_of([&] { writer << 1; }), "error.vxserialize.usage");
}

TEST(MemoryWriter, KeepsNoSecondUserOfWhatItHandsOver) {
    MemoryWriter writer;
    writer << std::string(600, 'x'); // across two blocks
    writer.begin_list(7);            // and in the middle of a list
    auto const list = writer.close_and_detach_memory_list();
    for (auto segment = list->segment_read_iterator(); !segment.at_end(); ++segment) {
        EXPECT_FALSE(segment->is_shared());
    }
    EXPECT_EQ(list->size(), 604u);
}

static_assert(std::is_constructible_v<MemoryReader, std::string const &>);
static_assert(!std::is_constructible_v<MemoryReader, std::string>, "it would be gone at once");
static_assert(!std::is_constructible_v<vxcore::StringSource, std::string>);

TEST(MemoryReader, KeepsNothingOfBorrowedBytes) {
    std::string const bytes = text_to_binary("<name> #6162 #6364");
    std::string borrowed = bytes;
    MemoryReader reader(borrowed);
    auto const own = reader.own_memory_list();
    auto const name = reader.read_string_key();
    auto const list = reader.read_binary_as_memory_list();
    ReadStreamPtr const stream = reader.read_binary();
    EXPECT_TRUE(reader.at_end());
    EXPECT_EQ(reader.memory_list(), nullptr);
    borrowed.assign(borrowed.size(), '?');
    char block[3] = {};
    EXPECT_EQ(stream->read(block, 3), 2u);
    EXPECT_EQ(name.value() + bytes_of(list) + block, "nameabcd");
    EXPECT_EQ(bytes_of(own), bytes);
    EXPECT_EQ(MemoryReader(list_of(bytes)).own_memory_list()->size(), bytes.size());
}

TEST(MemoryReader, CopiesAreReadersOfTheirOwn) {
    std::string const bytes = text_to_binary("[2: <name> 1, <name> 2]");
    for (unsigned int const segmentSize : {1u, 3u, 100u}) {
        MemoryReader reader(list_of(bytes, segmentSize));
        EXPECT_EQ(reader.begin_list(), 2u);
        EXPECT_TRUE(reader.has_next());
        EXPECT_EQ(reader.read_string_key().value(), "name");
        MemoryReader copy;
        copy = reader;
        for (MemoryReader * const each : {&copy, &reader}) {
            EXPECT_EQ(each->read_integer(), 1);
            EXPECT_TRUE(each->has_next());
            EXPECT_EQ(each->read_string_key().value(), "name");
            EXPECT_EQ(each->read_integer(), 2);
            EXPECT_FALSE(each->has_next());
        }
    }
}

} // namespace
