// The rules under test: no memory is handed out twice, any thread may free a block at any time, and
// memory goes back to the heap, whether the thread that allocated it is busy, idle or has ended.
// This program has the block cache in its own objects, switched on under sanitizers too.

#include "support/allocation.h"
#include "support/threads.h"

#include "vxattribute/value/block_cache_internal.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <latch>
#include <random>
#include <stop_token>
#include <unistd.h>
#include <utility>

namespace {

using vxattribute::impl::BlockCache;

/// Allocates a block and fills it with its size.
void * make(std::size_t size) {
    auto * const words = static_cast<std::uint16_t *>(BlockCache::allocate(size));
    std::fill_n(words, size / 2, static_cast<std::uint16_t>(size));
    return words;
}

/// Frees a block of `make`, or nothing, and checks that nobody else wrote to it.
void drop(void * block) {
    if (block != nullptr) {
        auto * const words = static_cast<std::uint16_t *>(block);
        std::size_t const size = words[0];
        EXPECT_EQ(std::count(words, words + size / 2, words[0]), static_cast<long>(size / 2));
        std::memset(block, 0, size);
        BlockCache::free(block, size);
    }
}

/// In a thread that ends, so that it keeps no blocks.
template <typename Work>
void in_thread(Work work) {
    std::thread(work).join();
}

void make_all(std::vector<void *> & blocks, std::size_t size) {
    std::ranges::generate(blocks, [size] { return make(size); });
}

TEST(BlockCacheThreads, BlocksOutliveTheirThreadsAndAreFreedByOthers) {
    std::vector<std::atomic<void *>> places(3000);
    long const before = vxtest::live_blocks();
    for (int wave = 0; wave < 4; ++wave) {
        vxtest::in_four_threads([&](int number) {
            std::minstd_rand random(static_cast<unsigned int>(4 * wave + number + 1));
            for (int i = 0; i < 5000 * (number + 1); ++i) { // they end at different times
                std::size_t const size = random() % 8 == 0 ? random() % 1100 + 2 : 40;
                drop(places[random() % places.size()].exchange(make(size)));
                drop(places[random() % places.size()].exchange(nullptr));
            }
        });
    }
    in_thread([&] {
        for (std::atomic<void *> & place : places) {
            drop(place);
        }
    });
    EXPECT_EQ(vxtest::live_blocks(), before);
}

TEST(BlockCacheThreads, MemoryOfAnIdleThreadIsReturnedAndUsedAgain) {
    std::vector<void *> blocks(10'000);
    std::latch made(1), freed(1);
    long const before = vxtest::live_blocks();
    std::jthread owner([&] {
        make_all(blocks, 40);
        made.count_down();
        freed.wait();
        make_all(blocks, 100);
        in_thread([&] { // every second one
            for (std::size_t i = 0; i < blocks.size(); i += 2) {
                drop(std::exchange(blocks[i], nullptr));
            }
        });
        EXPECT_LT(vxtest::count_allocations([&] {
                      for (std::size_t i = 0; i < blocks.size() - 200; i += 2) {
                          blocks[i] = make(100);
                      }
                  }),
                  2u)
            << "slabs";
        std::ranges::for_each(blocks, drop);
        EXPECT_LT(vxtest::live_blocks() - before, 8) << "what a thread keeps";
    });
    made.wait();
    in_thread([&] { std::ranges::for_each(blocks, drop); });
    EXPECT_LT(vxtest::live_blocks() - before, 8);
    freed.count_down();
}

TEST(BlockCache, FailedAllocationsLeaveItAsItWas) {
    in_thread([] {
        std::vector<void *> blocks(1000);
        long const before = vxtest::live_blocks();
        auto const drop_all = [&] {
            for (void *& block : blocks) {
                drop(std::exchange(block, nullptr));
            }
        };
        in_thread([&] {
            auto const make_more = [&] {
                for (std::size_t i = 0; i < blocks.size(); ++i) {
                    blocks[i] = make(i % 1000 + 2);
                }
            };
            drop(make(40)); // the thread has a pool from here on
            EXPECT_GT(vxtest::fail_each_allocation(make_more, drop_all), 20u);
            drop_all();
        });
        EXPECT_EQ(vxtest::live_blocks(), before);
    });
}

TEST(BlockCache, ServesDestructorsThatRunAfterTheEndOfItsThread) {
    in_thread([] { drop(make(40)); }); // the key of the cache comes first
    long const before = vxtest::live_blocks();
    pthread_key_t key;
    ASSERT_EQ(pthread_key_create(&key,
                                 [](void * block) {
                                     drop(block);
                                     drop(make(40));
                                 }),
              0);
    in_thread([key] { pthread_setspecific(key, make(40)); });
    pthread_key_delete(key);
    EXPECT_EQ(vxtest::live_blocks(), before);
}

#if !VX_HAS_SANITIZER // after a fork, sanitizers allow no threads
TEST(BlockCacheDeathTest, AForkMayComeWhileLocksAreHeld) {
    std::vector<void *> blocks(100);
    std::latch made(1);
    std::jthread const other([&](std::stop_token const & stop) {
        make_all(blocks, 1000);
        made.count_down();
        while (!stop.stop_requested()) { // has the lock a good part of the time
            void * churn[100];
            std::ranges::generate(churn, [] { return BlockCache::allocate(1000); });
            std::ranges::for_each(churn, [](void * block) { BlockCache::free(block, 1000); });
        }
        std::ranges::for_each(blocks, drop);
    });
    made.wait();
    auto const drop_all = [&] { std::ranges::for_each(blocks, drop); };
    for (int i = 0; i < 40; ++i) {
        EXPECT_EXIT((alarm(20), in_thread(drop_all), std::_Exit(0)), testing::ExitedWithCode(0),
                    "");
    }
}
#endif

} // namespace
