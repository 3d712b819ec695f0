// The rule under test: equal strings share one token while a key on it lives, few tokens without
// keys are kept, and all this holds with several threads.

#include "support/allocation.h"
#include "support/threads.h"

#include "vxcore/key_loan_impl.h"
#include "vxcore/string/siphash_internal.h"
#include "vxcore/string/token_shard_internal.h"
#include "vxcore/string_key.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <semaphore>
#include <sys/resource.h>
#include <vector>

namespace {

using vxcore::StringKey;

TEST(StringKey, EqualStringsShareOneToken) {
    StringKey const a("alpha");
    StringKey const b(std::string_view("alphabet", 5));
    StringKey const c(std::string_view("al\0ha", 5));
    EXPECT_EQ(a.key_value(), b.key_value());
    EXPECT_EQ(a.hash(), b.hash());
    EXPECT_NE(a, c);
    EXPECT_NE(a < c, c < a);
    EXPECT_EQ(c.value().size(), 5u);
}

TEST(StringKey, EveryEmptyKeyIsTheSame) {
    StringKey cleared("x");
    cleared.clear();
    StringKey moved("y");
    StringKey const taker(std::move(moved));
    for (StringKey const & key : {StringKey(), StringKey(""), cleared, moved}) {
        EXPECT_EQ(key.key_value(), nullptr);
        EXPECT_EQ(key.hash(), 0u);
        EXPECT_EQ(key.value(), "");
    }
    EXPECT_EQ(taker.value(), "y");
}

TEST(StringKey, TokensGoWithTheirLastKeyAndLookupsMakeNone) {
    StringKey found("kept");
    std::string const text = "only here, and longer than a short string";
    EXPECT_FALSE(StringKey::find_interned(text, found));
    EXPECT_EQ(found.value(), "kept");
    {
        StringKey const key(text), copy = key;
        ASSERT_TRUE(StringKey::find_interned(text, found));
        EXPECT_EQ(found, key);
        found.clear();
    }
    EXPECT_FALSE(StringKey::find_interned(text, found));
    EXPECT_TRUE(StringKey::find_interned("", found));
}

/// A loan takes 1, 4, 16 and 32 references: the token must go with the last of all of them.
TEST(StringKey, LoansDropTheReferencesThatTheyDidNotGive) {
    for (std::size_t given : {0u, 1u, 2u, 5u, 22u, 60u}) {
        std::vector<StringKey> keys;
        {
            vxcore::impl::KeyLoan first(StringKey("lent")), loan;
            loan = std::move(first);
            EXPECT_EQ(first.take(), StringKey());
            while (keys.size() < given) {
                keys.push_back(loan.take());
            }
        }
        StringKey found;
        EXPECT_EQ(StringKey::find_interned("lent", found), given != 0);
        EXPECT_EQ(std::count(keys.begin(), keys.end(), found), given);
        found.clear();
        keys.clear();
        EXPECT_FALSE(StringKey::find_interned("lent", found));
    }
}

/// 100,000 names, as of untrusted input, leave 2,560 tokens behind, and texts of more than 64 bytes
/// none. What is left serves later keys of the same texts, and is freed on demand.
TEST(StringKey, FewTokensWithoutKeysAreKept) {
    std::string const text = "made twice, and too long for a string";
    vxcore::impl::free_kept_tokens();
    long const before = vxtest::live_blocks();
    StringKey{std::string(65, 'x')};
    EXPECT_EQ(vxtest::live_blocks(), before);
    for (std::size_t size : {10u, 64u}) {
        for (int i = 0; i < 100000; ++i) {
            StringKey(std::to_string(100000 + i) + std::string(size - 6, '.'));
        }
    }
    EXPECT_LE(vxtest::live_blocks() - before, 2560 * 2 + 64); // with the buckets of each shard
    StringKey(std::string_view(text));
    EXPECT_EQ(vxtest::count_allocations([&text] { StringKey{std::string_view(text)}; }), 0u);
    vxcore::impl::free_kept_tokens();
    EXPECT_EQ(vxtest::live_blocks(), before);
}

TEST(StringKey, ATokenThatCannotBeMadeLeavesTheTableAsItWas) {
    vxcore::impl::free_kept_tokens();
    std::vector<StringKey> keys;
    keys.reserve(20'000);
    StringKey found;
    unsigned long failures = 0;
    while (keys.size() < keys.capacity()) { // beyond the first growth of all shards
        std::string const text = "name without memory " + std::to_string(keys.size());
        failures += vxtest::fail_each_allocation(
            [&] { keys.emplace_back(text); },
            [&] { ASSERT_FALSE(StringKey::find_interned(text, found)); });
        ASSERT_TRUE(StringKey::find_interned(text, found));
    }
    EXPECT_EQ(failures, 2 * keys.size()); // a larger index is not needed
    for (StringKey const & key : keys) {
        ASSERT_EQ(StringKey(key.value()), key);
    }
}

/// Each token is made, dropped and reused by several threads at once, while others take its place
/// among those that are kept.
TEST(StringKey, ThreadsMakeDropAndReuseTheSameNames) {
    vxtest::in_four_threads([](int seed) {
        std::vector<StringKey> keys;
        for (int round = 0; round < 20000; ++round) {
            int const number = (round * 7 + seed) % 97;
            StringKey key("name " + std::to_string(number));
            ASSERT_EQ(key.value(), "name " + std::to_string(number));
            keys.push_back(std::move(key));
            if (keys.size() > 50) {
                keys.clear(); // the last reference of many, while others make them anew
            }
            StringKey found, other("other name " + std::to_string(seed * 20000 + round));
            ASSERT_TRUE(!StringKey::find_interned("name 1", found) || found.value() == "name 1");
            if (round % 5000 == 0) {
                vxcore::impl::free_kept_tokens();
            }
        }
    });
    StringKey found;
    EXPECT_FALSE(StringKey::find_interned("name 1", found));
}

/// Texts that somebody chose for their hash: more than a few in a bucket make the shard rehash.
TEST(TokenShard, ChainsOfCollidingTextsStayShort) {
    vxcore::impl::TokenShard shard;
    std::vector<vxcore::impl::StringToken *> tokens;
    for (int i = 0; i < 5000; ++i) {
        tokens.push_back(shard.intern("name " + std::to_string(i), 7));
    }
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        int length = 0;
        for (auto const * token = tokens[i]; token != nullptr && length < 50; token = token->next) {
            ++length;
        }
        ASSERT_LT(length, 50);
        ASSERT_EQ(shard.find("name " + std::to_string(i), 7), tokens[i]);
        shard.release(tokens[i], 1);
    }
    for (auto * const token : tokens) {
        shard.release(token, 1);
    }
    shard.free_kept(true);
}

/// Otherwise a waiter could keep a holder of lower priority off its processor for ever.
TEST(StringKey, ALongWaitIsSlept) {
    static std::counting_semaphore<2> isHeld(0);
    std::jthread const holder([] {
        vxtest::call_at_allocation([] { // the token is made under the lock
            isHeld.release();
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        });
        StringKey const key("made slowly");
        isHeld.release(); // where allocations are not ours to watch
    });
    isHeld.acquire();
    rusage before, after; // of which yielding is no voluntary switch
    getrusage(RUSAGE_THREAD, &before);
    StringKey const key("made slowly");
    getrusage(RUSAGE_THREAD, &after);
    EXPECT_GT(after.ru_nvcsw, before.ru_nvcsw);
}

TEST(SipHash, AgreesWithThePublishedResult) {
    // Appendix A of the paper: key 00..0f, message 00..0e, 2-4 rounds.
    char const message[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14};
    EXPECT_EQ((vxcore::impl::SipHash<2, 4>::hash({0x0706050403020100u, 0x0f0e0d0c0b0a0908u},
                                                 message, 15)),
              0xa129ca6149be45e5u);
}

} // namespace
