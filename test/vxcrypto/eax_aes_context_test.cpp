// The rules under test: EAX gives the published results however the message is cut, refuses
// whatever was changed, deciphers nothing before the tag has matched, and leaves nothing behind.

#include "openssl_watch.h"
#include "support/allocation.h"
#include "support/expect_error.h"
#include "vectors.h"

#include "vxcrypto/eax_aes_context.h"

namespace {

using namespace vxtest;
using vxcrypto::EaxAesContext;
using vxcrypto::Key;

struct Message {
    std::string key;
    std::string nonce;
    std::string header;
    std::string body; // plain or sealed
    std::string tag;
};

Key key_of(Message const & message) {
    return Key(message.key.data(), size_of(message.key));
}

Message seal(Message message, unsigned int split = 0) {
    EaxAesContext eax(key_of(message), bytes(std::string_view(message.nonce)), message.header);
    unsigned char * const body = bytes(message.body);
    unsigned int const rest = size_of(message.body) - split;
    eax.ctr().process(body, split);
    eax.cmac().update(body, split);
    eax.ctr().process(body + split, rest);
    eax.cmac().update(body + split, rest);
    eax.finish();
    message.tag.assign(reinterpret_cast<char const *>(eax.tag()), EaxAesContext::tag_size);
    return message;
}

/// Deciphers the body when the tag is the message's.
bool open(Message & message, unsigned int split = 0) {
    EaxAesContext eax(key_of(message), bytes(std::string_view(message.nonce)), message.header);
    unsigned char * const body = bytes(message.body);
    unsigned int const rest = size_of(message.body) - split;
    eax.cmac().update(body, split);
    eax.cmac().update(body + split, rest);
    eax.finish();
    if (!eax.tag_matches(bytes(std::string_view(message.tag)))) {
        return false;
    }
    eax.ctr().process(body, split);
    eax.ctr().process(body + split, rest);
    return true;
}

TEST(EaxAesContext, GivesThePublishedResultsSplitAnywhere) {
    for (auto const & vector : read_vectors("eax.txt", 6)) {
        Message const plain = {vector[0], vector[1], vector[2], vector[3], ""};
        for (unsigned int split = 0; split <= plain.body.size(); ++split) {
            Message sealed = seal(plain, split);
            EXPECT_EQ(to_hex(sealed.body), to_hex(vector[4])) << split;
            EXPECT_EQ(to_hex(sealed.tag), to_hex(vector[5])) << split;
            EXPECT_TRUE(open(sealed, split));
            EXPECT_EQ(to_hex(sealed.body), to_hex(plain.body)) << split;
        }
    }
}

TEST(EaxAesContext, RefusesEverySingleChangedBit) {
    for (unsigned int size = 0; size <= 100; ++size) {
        Message message = {std::string(16, 'k'), std::string(16, 'n'), "header",
                           std::string(size, 'p'), ""};
        message = seal(message);
        for (std::string * const part :
             {&message.key, &message.nonce, &message.header, &message.body, &message.tag}) {
            for (std::size_t bit = 0; bit < part->size() * 8; ++bit) {
                char & byte = (*part)[bit / 8];
                byte = static_cast<char>(byte ^ 1 << bit % 8);
                ASSERT_FALSE(open(message)) << size << ' ' << bit;
                byte = static_cast<char>(byte ^ 1 << bit % 8);
            }
        }
        Message moved = message; // a byte that changes sides
        moved.header = "heade";
        moved.body.insert(0, "r");
        EXPECT_FALSE(open(moved));
        EXPECT_TRUE(open(message));
        EXPECT_EQ(message.body, std::string(size, 'p'));
    }
}

TEST(EaxAesContext, DeciphersNothingBeforeTheTagHasMatched) {
    // Of a refused message only the MAC's blocks are run: one for the subkeys, two for the nonce,
    // two for the header, one more than those of the body.
    struct Case {
        unsigned int size;
        unsigned long refused;
        unsigned long opened;
    };

    for (Case const & c : {Case{0, 6, 6}, {1, 7, 8}, {16, 7, 8}, {17, 8, 10}, {100, 13, 20}}) {
        Message good = seal(
            {std::string(16, 'k'), std::string(16, 'n'), "header", std::string(c.size, 'p'), ""});
        Message bad = good;
        bad.tag[15] ^= 1;
        std::string const body = bad.body;
        OpensslWatch watch;
        EXPECT_FALSE(open(bad));
        EXPECT_EQ(watch.calls.encrypted, c.refused) << c.size;
        EXPECT_EQ(bad.body, body);
        watch.calls.encrypted = 0;
        EXPECT_TRUE(open(good));
        EXPECT_EQ(watch.calls.encrypted, c.opened) << c.size;
    }
}

TEST(EaxAesContext, IsGoodOrNotMadeAtAll) {
    for (std::size_t const size : {0u, 15u, 17u, 33u}) {
        expect_error(
            [&] {
                seal({std::string(size, 'k'), std::string(16, 'n'), "", "", ""});
            },
            vxcore::ErrorCode("error.vxcrypto.key.size", true),
            "Key for AES must be 128, 192, or 256 bits (16, 24, or 32 bytes)");
    }
    Key const key("0123456789abcdef", 16);
    long const before = live_blocks();
    unsigned long const failures =
        fail_each_allocation([&] { EaxAesContext const eax(key, key.data(), "header"); },
                             [&] { EXPECT_EQ(live_blocks(), before); });
    EXPECT_EQ(failures, 2u);
    EXPECT_EQ(live_blocks(), before);
}

TEST(EaxAesContext, WipesItselfFromTheLastMadeToTheFirst) {
    Key const key("0123456789abcdef", 16);
    OpensslWatch watch;
    std::vector<Wiped> & wiped = watch.calls.wiped;
    void const * tag;
    std::uintptr_t ctr;
    std::uintptr_t cmac;
    {
        EaxAesContext eax(key, key.data(), "header");
        tag = eax.tag();
        ctr = reinterpret_cast<std::uintptr_t>(&eax.ctr());
        cmac = reinterpret_cast<std::uintptr_t>(&eax.cmac());
        EXPECT_EQ(wiped.size(), 2u); // L, and the MAC of the header
        eax.finish();
        EXPECT_EQ(wiped.size(), 3u); // and the MAC of the message
        wiped.clear();
    }
    auto const at = [&](std::size_t i) { return reinterpret_cast<std::uintptr_t>(wiped[i].data); };
    ASSERT_EQ(wiped.size(), 8u);
    EXPECT_EQ(wiped[0].data, tag);
    EXPECT_EQ(at(1), ctr + 32); // key stream, counter, start value
    EXPECT_EQ(at(2), ctr + 16);
    EXPECT_EQ(at(3), ctr);
    EXPECT_EQ(at(4), cmac + sizeof(void *)); // the running block
    EXPECT_EQ(at(5), at(6) + 16);            // the second subkey, the first one
    for (std::size_t i = 0; i < 7; ++i) {
        EXPECT_EQ(wiped[i].size, 16u) << i;
    }
    EXPECT_EQ(wiped[7].size, 244u); // the key schedule
}

} // namespace
