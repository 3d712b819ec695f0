// AES blocks and the two modes over them, against published results, cut anywhere.

#include "support/expect_error.h"
#include "support/threads.h"
#include "vectors.h"

#include "vxcrypto/aes_cmac_context.h"
#include "vxcrypto/aes_ctr_context.h"

namespace {

using namespace vxtest;
using vxcrypto::AesCmacContext;
using vxcrypto::AesCtrContext;
using vxcrypto::AesEncryptContext;

std::string encrypt(AesEncryptContext const & aes, std::string block) {
    aes.encrypt(bytes(block), bytes(block)); // in place
    return to_hex(block);
}

TEST(AesEncryptContext, GivesThePublishedBlocksAndRefusesOtherKeySizes) {
    std::string const key(64, 'k');
    AesEncryptContext aes;
    for (auto const & vector : read_vectors("aes.txt", 3)) {
        aes.rekey(bytes(vector[0]), size_of(vector[0]));
        EXPECT_EQ(encrypt(aes, vector[1]), to_hex(vector[2]));
        for (unsigned int const size : {0u, 1u, 15u, 17u, 23u, 25u, 31u, 33u, 64u, 0x20000010u}) {
            auto const info =
                expect_error([&] { aes.rekey(bytes(key), size); },
                             vxcore::ErrorCode("error.vxcrypto.key.size", true),
                             "Key for AES must be 128, 192, or 256 bits (16, 24, or 32 bytes)");
            ASSERT_TRUE(info);
            EXPECT_EQ(info->location().function().view(), "vxcrypto::AesEncryptContext::rekey()");
        }
        EXPECT_EQ(encrypt(aes, vector[1]), to_hex(vector[2])); // as it was
    }
}

vxcore::RefCountPtr<AesCmacContext::SharedState> shared_state(std::string const & key) {
    return vxcore::make_ref_counted<AesCmacContext::SharedState>(bytes(key), size_of(key));
}

std::string finish(AesCmacContext & cmac) {
    std::string mac(16, '\0');
    cmac.final(bytes(mac));
    return to_hex(mac);
}

TEST(AesCmacContext, GivesThePublishedMacsSplitAnywhere) {
    for (auto const & vector : read_vectors("cmac.txt", 3)) {
        std::string const & message = vector[1];
        auto const shared = shared_state(vector[0]);
        AesCmacContext cmac(shared);
        AesCmacContext single(shared);
        for (unsigned int split = 0; split <= message.size(); ++split) {
            cmac.update(bytes(message), split);
            cmac.update(nullptr, 0);
            cmac.update(bytes(message) + split, size_of(message) - split);
            EXPECT_EQ(finish(cmac), to_hex(vector[2])) << split;
            cmac.reset();
        }
        for (char const & byte : message) {
            single.update(bytes({&byte, 1}), 1);
        }
        EXPECT_EQ(finish(single), to_hex(vector[2]));
    }
}

TEST(AesCmacContext, ThreadsShareOneKeySetUp) {
    auto const vectors = read_vectors("cmac.txt", 3);
    auto shared = shared_state(vectors[3][0]);
    in_four_threads([&vectors, shared](int) {
        for (int round = 0; round < 1000; ++round) {
            AesCmacContext cmac(shared);
            cmac.update(bytes(std::string_view(vectors[3][1])), 64);
            ASSERT_EQ(finish(cmac), to_hex(vectors[3][2]));
        }
    });
}

TEST(AesCtrContext, GivesThePublishedTextsSplitAnywhere) {
    for (auto const & vector : read_vectors("ctr.txt", 4)) {
        AesEncryptContext aes;
        aes.rekey(bytes(vector[0]), size_of(vector[0]));
        AesCtrContext ctr(&aes);
        for (unsigned int split = 0; split <= vector[2].size(); ++split) {
            std::string text = vector[2];
            ctr.set_iv(bytes(vector[1]), 16); // drops what is left of the last block
            ctr.process(bytes(text), split);
            ctr.process(nullptr, 0);
            ctr.process(bytes(text) + split, size_of(text) - split);
            EXPECT_EQ(to_hex(text), to_hex(vector[3])) << split;
            ctr.set_iv(bytes(vector[1]), 16);
            ctr.process(bytes(text), split);
        }
    }
}

TEST(AesCtrContext, PadsOrCutsTheStartValue) {
    AesEncryptContext aes;
    aes.rekey(bytes("0123456789abcdef"), 16);
    std::string const iv = std::string(15, '\xFF') + std::string("\0\x55", 2);
    // The block cipher itself tells what the first block of the key stream has to be.
    std::string const zero = encrypt(aes, std::string(16, '\0'));
    std::string const padded = encrypt(aes, iv.substr(0, 16));
    AesCtrContext ctr(&aes);
    for (auto const & [size, expected] :
         {std::pair(17u, padded), {16u, padded}, {15u, padded}, {0u, zero}}) {
        std::string text(16, '\0');
        ctr.set_iv(size != 0 ? bytes(iv) : nullptr, size);
        ctr.process(bytes(text), 16);
        EXPECT_EQ(to_hex(text), expected) << size;
    }
    std::string text(16, '\0');
    AesCtrContext(&aes).process(bytes(text), 16);
    EXPECT_EQ(to_hex(text), zero); // without a start value
}

TEST(AesCtrContext, CarriesThroughTheWholeCounter) {
    AesEncryptContext aes;
    aes.rekey(bytes("0123456789abcdef"), 16);
    for (char const * const start :
         {"00000000000000ffffffffffffffffff", "00000000000000000000000000ffffff",
          "0123456789abcdeffffffffffffffffa"}) {
        std::string const iv = from_hex(start);
        std::string text(16 * 20, '\0');
        AesCtrContext ctr(&aes);
        ctr.set_iv(bytes(iv), 16);
        ctr.process(bytes(text), size_of(text));
        std::string counter = iv;
        for (std::size_t block = 0; block < 20; ++block) {
            EXPECT_EQ(to_hex(text.substr(16 * block, 16)), encrypt(aes, counter)) << block;
            for (std::size_t i = 16; i-- != 0 && ++counter[i] == 0;) {
            }
        }
    }
}

} // namespace
