// The rules under test: EAX produces the published results however the message is cut, or in one
// call, deciphers nothing before the tag has matched, and leaves no secret behind. The tests of
// sealed values, whose parts may come from anybody, check that it refuses every single changed bit.

#include "openssl_calls.h"
#include "support/allocation.h"
#include "vectors.h"

#include "vxcore/error_exception.h"
#include "vxcrypto/eax_aes.h"
#include "vxcrypto/eax_aes_context.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
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

Message seal_at_once(Message message) {
    Key const key(message.key.data(), size_of(message.key));
    message.tag.resize(EaxAesContext::tag_size);
    vxcrypto::eax_aes_seal(key, bytes(message.nonce), message.header, mutable_bytes(message.body),
                           size_of(message.body), mutable_bytes(message.tag));
    return message;
}

/// As `open`, by the functions for whole messages, which must agree. Opens to another place first.
bool open_at_once(Message & message) {
    Key const key(message.key.data(), size_of(message.key));
    auto const matches = [&](auto function, auto... opened) {
        return function(key, bytes(message.nonce), message.header, bytes(message.body),
                        size_of(message.body), bytes(message.tag), opened...);
    };
    std::string other(message.body.size(), '?');
    bool const isRight = matches(vxcrypto::eax_aes_verify);
    EXPECT_EQ(matches(vxcrypto::eax_aes_open, mutable_bytes(other)), isRight);
    EXPECT_EQ(matches(vxcrypto::eax_aes_open, mutable_bytes(message.body)), isRight);
    EXPECT_EQ(other, isRight ? message.body : std::string(other.size(), '?'));
    return isRight;
}

/// Returns true when runs of blocks must use the AES-NI functions.
bool uses_aesni() {
#if defined(VX_AES_BULK) && defined(__x86_64__)
    return __builtin_cpu_supports("aes") && std::getenv("VX_FIRST_SCHEDULE_FAILS") == nullptr;
#else
    return false;
#endif
}

TEST(EaxAesContext, GivesThePublishedResultsCutAnywhere) {
    for (auto const & vector : read_vectors("eax.txt")) {
        Message whole = seal_at_once({vector[0], vector[1], vector[2], vector[3]});
        EXPECT_EQ(whole.body, vector[4]);
        EXPECT_EQ(whole.tag, vector[5]);
        EXPECT_TRUE(open_at_once(whole));
        EXPECT_EQ(whole.body, vector[3]);
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
TEST(EaxAesContext, RunsOfBlocksAndWholeMessagesAgreeWithSingleBlocks) {
    std::mt19937 random(20261124);
    for (int round = 0; round < 600; ++round) {
        Message message = sample(round <= 80 ? static_cast<unsigned int>(round) : random() % 1500);
        message.key.resize(16 + static_cast<std::size_t>(round) % 3 * 8);
        message.header.resize(random() % 70, 'h');
        message.nonce[15] = static_cast<char>(round);
        if (round <= 80 && message.key.size() == 16) {
            // The counter of the second block is all ones.
            message.nonce = "\x62\x1F\x14\x08\xD0\x33\x88\x54\xCE\xAF\x77\x9A\xD9\xEC\x77\xB0";
        }
        Pieces pieces;
        for (unsigned int left = size_of(message.body); left != 0; left -= pieces.back()) {
            pieces.push_back(1 + static_cast<unsigned int>(random()) % left);
        }
        Message const single = seal(message, Pieces(message.body.size(), 1));
        Message whole = seal_at_once(message);
        ASSERT_EQ(whole.body, single.body) << round;
        ASSERT_EQ(whole.tag, single.tag) << round;
        ASSERT_TRUE(open_at_once(whole));
        ASSERT_EQ(whole.body, message.body);
        Message cut = seal(message, pieces);
        ASSERT_EQ(cut.body, single.body) << round;
        ASSERT_EQ(cut.tag, single.tag) << round;
        ASSERT_TRUE(open(cut, pieces));
        ASSERT_EQ(cut.body, message.body);
    }
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
        openssl_calls() = {};
        EXPECT_FALSE(open_at_once(message));
        EXPECT_EQ(openssl_calls().encrypted, aesni ? 0 : 3 * portable) << size;
        EXPECT_EQ(message.body, body);
    }
}

TEST(EaxAesContext, IsGoodOrNotMadeAtAll) {
    EXPECT_THROW(begin({"fifteen bytes..", {}, {}, {}}), vxcore::ErrorException);
    EXPECT_THROW(seal_at_once({"fifteen bytes..", {}, {}, {}}), vxcore::ErrorException);
    Key const key("0123456789abcdef", 16);
    long const before = live_blocks();
    EXPECT_EQ(fail_each_allocation([&] { EaxAesContext const eax(key, key.data(), "header"); },
                                   [&] { EXPECT_EQ(live_blocks(), before); }),
              2u);
    unsigned char message[16] = {}, tag[16] = {};
    auto const seal_here = [&] {
        vxcrypto::eax_aes_seal(key, key.data(), "header", message, 16, tag);
    };
    EXPECT_EQ(fail_each_allocation(
                  seal_here, [&] { EXPECT_EQ(std::count(message, std::end(message), 0), 16); }),
              uses_aesni() ? 0u : 2u);
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
    unsigned char counter[16] = {}, blocks[9 * 16] = {}, tag[16];
    bool isRight = false;
    Key const key("0123456789abcdef", 16);

    struct Run {
        std::function<void()> run;
        unsigned int portableWipes, wipes;
    };

    // The functions for whole messages wipe schedule, tag, counter and last block at once.
    for (auto const & [run, portableWipes, wipes] : {
             Run{[&] { aes.xor_key_stream(counter, blocks, 9); }, 1, 0},
             {[&] { aes.chain(counter, blocks, 9); }, 0, 0},
             {[&] { vxcrypto::eax_aes_seal(key, counter, "header", blocks, 99, tag); }, 12, 1},
             {[&] { isRight = vxcrypto::eax_aes_verify(key, counter, "header", blocks, 99, tag); },
              11, 1},
             {[&] {
                  isRight &=
                      vxcrypto::eax_aes_open(key, counter, "header", blocks, 99, tag, blocks);
              },
              12, 1},
         }) {
        unsigned char registers[16 * 16] = {};
        openssl_calls() = {};
        run();
#if defined(__x86_64__)
        asm volatile(".irp i, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15\n\t"
                     "movups %%xmm\\i, 16 * \\i(%0)\n\t.endr" ::"r"(registers)
                     : "memory");
#endif
        EXPECT_EQ(openssl_calls().wipes, uses_aesni() ? wipes : portableWipes);
        EXPECT_TRUE(wipes == 0 || !uses_aesni() || openssl_calls().wiped[0].size == 292);
        EXPECT_TRUE(!uses_aesni() || std::count(registers, std::end(registers), 0) == 16 * 16);
    }
    EXPECT_TRUE(isRight);
}

} // namespace
