#include "forms.h"
#include "support/allocation.h"

#include "vxserialize/memory_list_order.h"

#include <random>
#include <stdexcept>
#include <vector>

namespace {

using namespace vxtest;
using impl::compare_memory_lists;
using impl::hash_memory_list;

using OwnListPtr = vxcore::RefCountPtr<MemoryList>;

/// Adds `delta` to every byte, through the write iterator.
void write_all(MemoryList & list, char delta) {
    for (auto segment = list.segment_write_iterator(); !segment.at_end(); ++segment) {
        unsigned char * const data = segment->get_inplace_write_ptr(segment->size());
        for (unsigned int i = 0; i < segment->size(); ++i) {
            data[i] = static_cast<unsigned char>(data[i] + delta);
        }
    }
}

// The rule under test: lists that share memory behave like plain strings that share nothing.
TEST(MemoryList, AgreesWithPlainStrings) {
    std::mt19937 random(20261124);
    auto const below = [&random](std::size_t n) { return static_cast<unsigned int>(random() % n); };
    std::vector<OwnListPtr> lists(4);
    std::vector<std::string> models(4);
    for (OwnListPtr & list : lists) {
        list = MemoryList::create();
    }
    for (int step = 0; step < 4000; ++step) {
        unsigned int const a = below(4);
        unsigned int const b = below(4); // may be the same one
        unsigned int const position = below(models[b].size() + 1);
        unsigned int const size = below(700);
        std::string const piece(size, static_cast<char>(step));
        switch (below(models[a].size() < 20'000 ? 6 : 2)) {
        case 0:
            lists[a] = lists[b]->sublist(position, size);
            models[a] = models[b].substr(position, size);
            break;
        case 1:
            write_all(*lists[a], 3);
            std::for_each(models[a].begin(), models[a].end(),
                          [](char & c) { c = static_cast<char>(c + 3); });
            break;
        case 2:
            lists[a]->append(piece.data(), size);
            models[a] += piece;
            break;
        case 3:
        case 4:
            step % 2 == 0 ? lists[a]->append(*lists[b], position, size)
                          : lists[a]->append_defragmented(*lists[b], position, size);
            models[a] += models[b].substr(position, size);
            break;
        default:
            lists[a] = lists[b]->shallow_clone();
            models[a] = models[b];
        }
        for (unsigned int i = 0; i < 4; ++i) {
            ASSERT_EQ(bytes_of(lists[i]), models[i]) << "step " << step << " list " << i;
        }
    }
}

TEST(MemoryList, WritesInPlaceExactlyWhenNobodyElseUsesTheBlock) {
    OwnListPtr list = MemoryList::create("secret", 6);
    unsigned char const * const stored = list->segment_read_iterator()->data();
    OwnListPtr clone = list->shallow_clone();
    EXPECT_TRUE(clone->segment_read_iterator()->is_shared());
    std::memset(clone->segment_write_iterator()->get_inplace_write_ptr(6), 0, 6);
    EXPECT_EQ(bytes_of(list), "secret"); // the clone wiped a copy of its own
    EXPECT_EQ(bytes_of(clone), std::string(6, '\0'));

    clone = list->shallow_clone();
    list.reset();
    EXPECT_FALSE(clone->segment_read_iterator()->is_shared());
    EXPECT_EQ(clone->segment_write_iterator()->get_inplace_write_ptr(6), stored);
    EXPECT_THROW(clone->segment_write_iterator()->get_inplace_write_ptr(7), std::out_of_range);

    OwnListPtr const other = MemoryList::create("kept", 4);
    clone->append(*other);
    clone->append(*clone, 0, 3);
    clone->overwrite_own_bytes(
        [](void * data, std::size_t size) noexcept { std::memset(data, '-', size); });
    std::string left = bytes_of(clone);
    EXPECT_TRUE(left == "---------kept" || left == "kept---------") << left;
    write_all(*clone, 1); // two segments still share a block: none is written twice
    left = bytes_of(clone);
    EXPECT_EQ(std::count(left.begin(), left.end(), '-' + 1), 9) << left;
}

TEST(MemoryList, CursorReadsAcrossSegments) {
    ListPtr const list = list_of("abcdefgh", 3);
    MemoryListCursor cursor = list->reader(2);
    char buffer[8] = {};
    EXPECT_EQ(cursor.read_at_cursor(buffer, 4), 4u);
    EXPECT_STREQ(buffer, "cdef");
    EXPECT_EQ(bytes_of(cursor.sublist_at_cursor(2)), "cd"); // nothing of that moved it
    EXPECT_EQ(cursor.cursor_advance(1), 1u);
    unsigned int run = 0;
    EXPECT_EQ(*cursor.data_at_cursor(run), 'd');
    EXPECT_EQ(run, 3u);
    EXPECT_EQ(cursor.cursor_advance(100), 5u);
    EXPECT_TRUE(cursor.is_eof());
    EXPECT_TRUE(MemoryListCursor().is_eof());
}

TEST(MemoryList, BoundsAndSizesDoNotWrap) {
    OwnListPtr const list = MemoryList::create("abc", 3);
    EXPECT_EQ(bytes_of(list->sublist(2, MemoryList::all)), "c");
    EXPECT_TRUE(list->sublist(3)->empty());
    EXPECT_THROW((void)list->sublist(4), std::out_of_range);
    EXPECT_THROW(list->append(*list, 4), std::out_of_range);
    OwnListPtr const large = MemoryList::create(std::string(1 << 20, 'x').data(), 1 << 20);
    for (int i = 0; i < 11; ++i) {
        large->append(*large); // 2 GiB of one shared block
    }
    EXPECT_THROW(large->append(*large), std::length_error);
    large->append(*large, 1);
    EXPECT_THROW(large->append("x", 1), std::length_error);
    EXPECT_THROW(large->append_defragmented(*list), std::length_error);
    EXPECT_EQ(large->size(), 0xFFFFFFFFu);
}

TEST(MemoryList, FailedAllocationLeavesTheListAsItWas) {
    void (*const operations[])(MemoryList &) = {
        [](MemoryList & list) { list.append(std::string(300, 'p').data(), 300); },
        [](MemoryList & list) { list.append(list); },
        [](MemoryList & list) { list.append_defragmented(list); }};
    for (auto const operation : operations) {
        OwnListPtr list;
        long const before = vxtest::live_blocks();
        unsigned long const failures = vxtest::fail_each_allocation(
            [&] {
                list = MemoryList::create("ab", 2);
                operation(*list);
            },
            [&] { EXPECT_TRUE(!list || bytes_of(list) == "ab"); });
        EXPECT_GT(failures, 2u);
        EXPECT_NE(bytes_of(list), "ab");
        list.reset();
        EXPECT_EQ(vxtest::live_blocks(), before);
    }
}

TEST(MemoryListOrder, GoesByContentAndNotBySegments) {
    for (unsigned int piece : {1u, 2u, 3u, 100u}) {
        EXPECT_EQ(compare_memory_lists(list_of("abcde"), list_of("abcde", piece)), 0);
        EXPECT_EQ(hash_memory_list(list_of("abcde")), hash_memory_list(list_of("abcde", piece)));
        EXPECT_EQ(compare_memory_lists(list_of("abcd\x80"), list_of("abcd\x7f", piece)), 1);
        EXPECT_EQ(compare_memory_lists(list_of("abc", piece), list_of("abcd")), -1);
    }
    EXPECT_EQ(compare_memory_lists(nullptr, list_of("")), 0);
    EXPECT_EQ(compare_memory_lists(nullptr, list_of("a")), -1);
    EXPECT_EQ(compare_memory_lists(list_of("a"), nullptr), 1);
    EXPECT_EQ(hash_memory_list(nullptr), 0u);
}

} // namespace
