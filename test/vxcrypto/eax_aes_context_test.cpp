// The rules under test: EAX produces the published results however the message is cut, deciphers
// nothing before the tag has matched, and leaves no secret behind. The tests of sealed values,
// whose parts may come from anybody, check that it refuses every single changed bit.

#include "openssl_calls.h"
#include "support/allocation.h"
#include "vectors.h"

#include "vxcore/error_exception.h"
#include "vxcrypto/eax_aes_context.h"

#include <algorithm>
#include <cstdlib>
#include <random>

namespace {

using namespace vxtest;
using vxcrypto::EaxAesContext;
using vxcrypto::Key;

struct Message {
    std::string key;
    std::string nonce;
    std::string header;
    std::string body; // plain or sealed
    std::string tag = {};
};

Message sample(std::size_t size) {
    return {std::string(16, 'k'), std::string(16, 'n'), "header", std::string(size, 'p')};
}

EaxAesContext begin(Message const & message) {
    return {Key(message.key.data(), size_of(message.key)), bytes(message.nonce), message.header};
}

Message seal(Message message, Pieces const & pieces) {
    EaxAesContext eax = begin(message);
    in_pieces(message.body, pieces, [&](auto * data, unsigned int n) {
        eax.ctr().process(data, n);
        eax.cmac().update(data, n);
    });
    eax.finish();
    message.tag.assign(reinterpret_cast<char const *>(eax.tag()), EaxAesContext::tag_size);
    return message;
}

/// Deciphers the body if the tag matches the message.
bool open(Message & message, Pieces const & pieces) {
    EaxAesContext eax = begin(message);
    in_pieces(message.body, pieces,
              [&](auto * data, unsigned int n) { eax.cmac().update(data, n); });
    eax.finish();
    bool const matches = eax.tag_matches(bytes(message.tag));
    if (matches) {
        in_pieces(message.body, pieces,
                  [&](auto * data, unsigned int n) { eax.ctr().process(data, n); });
    }
    return matches;
}

TEST(EaxAesContext, GivesThePublishedResultsCutAnywhere) {
    for (auto const & vector : read_vectors("eax.txt")) {
        for (Pieces const & pieces : cuts_of(vector[3].size())) {
            Message message = seal({vector[0], vector[1], vector[2], vector[3]}, pieces);
            EXPECT_EQ(message.body, vector[4]);
            EXPECT_EQ(message.tag, vector[5]);
            EXPECT_TRUE(open(message, pieces));
            EXPECT_EQ(message.body, vector[3]);
        }
    }
}

/// Single bytes always go block by block through AES_encrypt, larger pieces in runs of blocks.
TEST(EaxAesContext, RunsOfBlocksAgreeWithSingleOnes) {
    std::mt19937 random(20261124);
    for (int round = 0; round < 600; ++round) {
        Message message = sample(random() % 1500);
        message.key.resize(16 + static_cast<std::size_t>(round) % 3 * 8);
        message.nonce[15] = static_cast<char>(round);
        Pieces pieces;
        for (unsigned int left = size_of(message.body); left != 0; left -= pieces.back()) {
            pieces.push_back(1 + static_cast<unsigned int>(random()) % left);
        }
        Message const single = seal(message, Pieces(message.body.size(), 1));
        Message cut = seal(message, pieces);
        ASSERT_EQ(cut.body, single.body) << round;
        ASSERT_EQ(cut.tag, single.tag) << round;
        ASSERT_TRUE(open(cut, pieces));
        ASSERT_EQ(cut.body, message.body);
    }
}

/// Returns true when runs of blocks must use the AES-NI functions.
bool uses_aesni() {
#if defined(VX_AES_BULK) && defined(__x86_64__)
    return __builtin_cpu_supports("aes") && std::getenv("VX_FIRST_SCHEDULE_FAILS") == nullptr;
#else
    return false;
#endif
}

TEST(EaxAesContext, DeciphersNothingBeforeTheTagHasMatched) {
    bool const aesni = uses_aesni();
    // Calls of AES_encrypt for a message that is refused: one for the subkeys, two for the nonce,
    // two for the header, one more than the body has blocks. With the AES-NI functions only the
    // blocks that end a piece remain.
    for (auto const & [size, portable, rest] : {std::tuple(0u, 6u, 5u),
                                                {1u, 7u, 6u},
                                                {16u, 7u, 5u},
                                                {17u, 8u, 6u},
                                                {100u, 13u, 6u},
                                                {1600u, 106u, 5u}}) {
        Message message = seal(sample(size), {size});
        std::string const body = message.body;
        message.tag[15] ^= 1;
        openssl_calls() = {};
        EXPECT_FALSE(open(message, {size}));
        EXPECT_EQ(openssl_calls().encrypted, aesni ? rest : portable) << size;
        EXPECT_EQ(message.body, body);
    }
}

TEST(EaxAesContext, IsGoodOrNotMadeAtAll) {
    EXPECT_THROW(begin({"fifteen bytes..", {}, {}, {}}), vxcore::ErrorException);
    Key const key("0123456789abcdef", 16);
    long const before = live_blocks();
    EXPECT_EQ(fail_each_allocation([&] { EaxAesContext const eax(key, key.data(), "header"); },
                                   [&] { EXPECT_EQ(live_blocks(), before); }),
              2u);
    EXPECT_EQ(live_blocks(), before);
}

TEST(EaxAesContext, WipesItselfFromTheLastMadeToTheFirst) {
    Key const key("0123456789abcdef", 16);
    auto const at = [](int i) { return static_cast<char const *>(openssl_calls().wiped[i].data); };
    openssl_calls() = {};
    std::vector<void const *> places;
    {
        EaxAesContext eax(key, key.data(), "header");
        auto const * const ctr = reinterpret_cast<char const *>(&eax.ctr());
        auto const * const cmac = reinterpret_cast<char const *>(&eax.cmac());
        // The tag; key stream, counter and start value; the running block.
        places = {eax.tag(), ctr + 32, ctr + 16, ctr, cmac + sizeof(void *)};
        eax.finish();
        EXPECT_EQ(openssl_calls().wipes, 3u); // of the subkeys' block, of two MACs
        openssl_calls() = {};
    }
    ASSERT_EQ(openssl_calls().wipes, 8u);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(at(i), places[static_cast<std::size_t>(i)]) << i;
    }
    EXPECT_EQ(at(5), at(6) + 16); // the second subkey, the first one, the key schedule
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(openssl_calls().wiped[i].size, i < 7 ? 16u : 244u) << i;
    }
}

TEST(AesEncryptContext, LeavesNothingOfAKeyStreamInBuffersAndRegisters) {
    vxcrypto::AesEncryptContext aes;
    aes.rekey(bytes("0123456789abcdef"), 16);
    unsigned char counter[16] = {}, blocks[9 * 16] = {};
    for (bool isChain : {false, true}) {
        unsigned char registers[16 * 16] = {};
        openssl_calls() = {};
        isChain ? aes.chain(counter, blocks, 9) : aes.xor_key_stream(counter, blocks, 9);
#if defined(__x86_64__)
        asm volatile(".irp i, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15\n\t"
                     "movups %%xmm\\i, 16 * \\i(%0)\n\t.endr" ::"r"(registers)
                     : "memory");
#endif
        EXPECT_EQ(openssl_calls().wipes, isChain || uses_aesni() ? 0u : 1u);
        EXPECT_TRUE(!uses_aesni() || std::count(registers, std::end(registers), 0) == 16 * 16);
    }
}

} // namespace
