#include "forms.h"

namespace {

using namespace vxtest;
using vxcore::StringKey;

struct Row {
    char const * hex;
    EElementKind kind;
    void (*write)(Writer &);
};

std::string const s63(63, 'a');
std::string const s64(64, 'a');
std::string const s256(256, 'a');

Row const rows[] = {
    {"F0", eElement_Null, [](Writer & w) { w.write_null(); }},
    {"F1", eElement_Boolean, [](Writer & w) { w << false; }},
    {"F2", eElement_Boolean, [](Writer & w) { w << true; }},
    {"40", eElement_Integer, [](Writer & w) { w << -8; }},
    {"7F", eElement_Integer, [](Writer & w) { w << 55; }},
    {"E038", eElement_Integer, [](Writer & w) { w << 56; }},
    {"E0F7", eElement_Integer, [](Writer & w) { w << -9; }},
    {"E080", eElement_Integer, [](Writer & w) { w << -128; }},
    {"E18000", eElement_Integer, [](Writer & w) { w << 128; }},
    {"E17FFF", eElement_Integer, [](Writer & w) { w << -129L; }},
    {"E3FFFFFF7F", eElement_Integer, [](Writer & w) { w << 0x7FFFFFFF; }},
    {"E40000008000", eElement_Integer, [](Writer & w) { w << 0x80000000LL; }},
    {"E70000000000000080", eElement_Integer, [](Writer & w) { w << -0x7FFFFFFFFFFFFFFFLL - 1; }},
    {"80", eElement_Unsigned, [](Writer & w) { w.write_uint(0); }},
    {"9F", eElement_Unsigned, [](Writer & w) { w << 31u; }},
    {"E820", eElement_Unsigned, [](Writer & w) { w << 32u; }},
    {"E90001", eElement_Unsigned, [](Writer & w) { w << 256u; }},
    {"EBFFFFFFFF", eElement_Unsigned, [](Writer & w) { w << 0xFFFFFFFFu; }},
    {"F3000000000000F83F", eElement_Double, [](Writer & w) { w << 1.5; }},
    {"00", eElement_String, [](Writer & w) { w << ""; }},
    {"026869", eElement_String, [](Writer & w) { w.write_string_key(StringKey("hi")); }},
    {"F40100000000000000", eElement_AbsoluteTime, [](Writer & w) { w << vxcore::AbsoluteTime(1); }},
    {"F5FFFFFFFFFFFFFFFF", eElement_RelativeTime,
     [](Writer & w) { w << vxcore::RelativeTime(-1); }},
    {"F600000000000000000000000000000000", eElement_Uuid, [](Writer & w) { w << vxcore::Uuid(); }},
    {"C0", eElement_Binary, [](Writer & w) { w.write_binary(nullptr, 0); }},
    {"C20102", eElement_Binary, [](Writer & w) { w.write_binary("\1\2", 2); }},
    {"A0", eElement_List, [](Writer & w) { w.begin_list(0), w.end_list(); }},
    {"A2F0F0", eElement_List,
     [](Writer & w) {
         w.begin_list(2), w.write_null(), w.next_list_item(), w.write_null(), w.end_list();
     }},
    {"F740F8", eElement_Record, [](Writer & w) { w.begin_record(), w << -8, w.end_record(); }},
};

TEST(BinaryForm, PutsEachElementAsThePageTells) {
    for (Row const & row : rows) {
        EXPECT_EQ(to_hex(write_binary_form(row.write)), row.hex);
        EXPECT_EQ(MemoryReader(list_of(from_hex(row.hex))).next_type(), row.kind) << row.hex;
    }
    EXPECT_EQ(to_hex(write_binary_form([](Writer & w) { w << s63; })).substr(0, 4), "3F61");
    EXPECT_EQ(to_hex(write_binary_form([](Writer & w) { w << s64; })).substr(0, 6), "DC4061");
    EXPECT_EQ(to_hex(write_binary_form([](Writer & w) { w << s256; })).substr(0, 8), "DD000161");
    EXPECT_EQ(
        to_hex(write_binary_form([](Writer & w) { w.write_binary(s64.data(), 24); })).substr(0, 6),
        "D81861");
    MemoryWriter writer; // only the header of a long list
    writer.begin_list(65536);
    EXPECT_EQ(to_hex(bytes_of(writer.close_and_detach_memory_list())), "EE000001");
}

TEST(BinaryForm, ReadsTheExampleOfThePage) {
    std::string const hex = page_block("binary.md", "hex");
    MemoryReader reader(list_of(from_hex(hex)));
    EXPECT_EQ(reader.begin_list(), 2u);
    ASSERT_TRUE(reader.has_next());
    EXPECT_EQ(reader.read_string_key(), StringKey("port"));
    EXPECT_EQ(reader.read_integer(), 8080);
    ASSERT_TRUE(reader.has_next());
    EXPECT_EQ(reader.read_string_key(), StringKey("host"));
    std::string text;
    reader >> text;
    EXPECT_EQ(text, "x");
    EXPECT_FALSE(reader.has_next());
    EXPECT_EQ(to_hex(from_hex(hex)), to_hex(write_binary_form([](Writer & w) {
                  w.begin_list(2);
                  w << "port" << 8080;
                  w.next_list_item();
                  w << "host"
                    << "x";
                  w.end_list();
              })));
}

TEST(BinaryForm, TakesAnyWidth) {
    MemoryReader reader(list_of(from_hex("E105 00 E7FFFFFFFFFFFFFFFF EA010000 DF01000000 61 "
                                         "DB01000000 62 EF01000000 F0"),
                                1));
    EXPECT_EQ(reader.read_integer(), 5);
    EXPECT_EQ(reader.read_integer(), -1);
    EXPECT_EQ(reader.read_uint(), 1u);
    EXPECT_EQ(reader.read_string_key(), StringKey("a"));
    EXPECT_EQ(bytes_of(reader.read_binary_as_memory_list()), "b");
    EXPECT_EQ(reader.begin_list(), 0u);
    EXPECT_TRUE(reader.has_next() && reader.read_if_null() && !reader.has_next());
    EXPECT_EQ(reader.next_type(), eElement_None);
}

TEST(BinaryForm, KnowsItsVersionAndRefusesOthers) {
    MemoryReader marked(list_of(from_hex("FF01 45")));
    EXPECT_EQ(marked.read_integer(), -3);
    for (char const * const hex : {"FF0245", "FF", "F945", "FEFF"}) {
        MemoryReader reader(list_of(from_hex(hex)));
        EXPECT_EQ(reader.next_type(), eElement_None) << hex;
        EXPECT_EQ(code_of([&] { (void)reader.read_integer(); }),
                  hex[1] == 'F' ? "error.vxserialize.data.version" : "error.vxserialize.data.type");
    }
    MemoryReader later(list_of(from_hex("45FF01")));
    EXPECT_EQ(later.read_integer(), -3);
    EXPECT_EQ(code_of([&] { later.read_null(); }), "error.vxserialize.data.type");
}

TEST(MemoryWriter, SnapshotsShareTheBytesAndStandStill) {
    MemoryWriter writer;
    EXPECT_TRUE(writer.reader().memory_list()->empty());
    writer.begin_list(2);
    writer << 1;
    MemoryReader const snapshot = writer.reader();
    writer.next_list_item();
    writer << std::string(200'000, 'x');
    writer.end_list();
    EXPECT_EQ(to_hex(bytes_of(snapshot.memory_list())), "A249");
    EXPECT_EQ(writer.size(), 200'006u);
    EXPECT_EQ(writer.reader().memory_list()->size(), 200'006u);
    unsigned char const * const first = snapshot.memory_list()->segment_read_iterator()->data();
    auto const list = writer.close_and_detach_memory_list();
    EXPECT_EQ(list->segment_read_iterator()->data(), first);
    EXPECT_EQ(list->size(), 200'006u);
    EXPECT_TRUE(writer.close_and_detach_memory_list()->empty());
    EXPECT_EQ(code_of([&] { writer << 1; }), "error.vxserialize.usage");
    EXPECT_EQ(code_of([&] { writer.begin_list(0); }), "error.vxserialize.usage");
}

TEST(MemoryWriter, KeepsNoSecondUserOfWhatItHandsOver) {
    MemoryWriter writer;
    writer << s256 << s256; // across two blocks
    writer.begin_list(7);   // and in the middle of a list
    auto const list = writer.close_and_detach_memory_list();
    unsigned int segments = 0;
    for (auto segment = list->segment_read_iterator(); !segment.at_end(); ++segment, ++segments) {
        EXPECT_FALSE(segment->is_shared());
    }
    EXPECT_EQ(segments, 2u);
}

TEST(MemoryReader, CopiesAreReadersOfTheirOwn) {
    std::string const bytes = write_binary_form([](Writer & w) {
        w.begin_list(2);
        w << "name" << 1;
        w.next_list_item();
        w << "name" << 2;
        w.end_list();
    });
    for (unsigned int segmentSize : {1u, 3u, 100u}) {
        MemoryReader reader(list_of(bytes, segmentSize));
        reader.begin_list();
        ASSERT_TRUE(reader.has_next());
        EXPECT_EQ(reader.read_string_key().value(), "name");
        MemoryReader copy(reader);
        MemoryReader assigned;
        assigned = copy;
        for (MemoryReader * const each : {&copy, &assigned, &reader}) {
            EXPECT_EQ(each->read_integer(), 1);
            EXPECT_TRUE(each->has_next());
            EXPECT_EQ(each->read_string_key().value(), "name");
            EXPECT_EQ(each->read_integer(), 2);
            EXPECT_FALSE(each->has_next());
            EXPECT_EQ(each->memory_list()->size(), bytes.size());
        }
    }
    EXPECT_EQ(MemoryReader().memory_list(), nullptr);
    EXPECT_EQ(MemoryReader().next_type(), eElement_None);
}

} // namespace
