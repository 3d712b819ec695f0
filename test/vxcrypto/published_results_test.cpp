// Compares AES blocks, the two modes over them and MD5 with published results. Messages are cut
// anywhere.

#include "support/expect_error.h"
#include "support/threads.h"
#include "vectors.h"

#include "vxcrypto/aes_cmac_context.h"
#include "vxcrypto/aes_ctr_context.h"
#include "vxcrypto/md5_context.h"

#include <algorithm>

namespace {

using namespace std::string_literals;
using namespace vxtest;
using vxcrypto::AesCmacContext;
using vxcrypto::AesCtrContext;
using vxcrypto::AesEncryptContext;

std::string encrypt(AesEncryptContext const & aes, std::string block) {
    aes.encrypt(bytes(block), mutable_bytes(block)); // in place
    return block;
}

TEST(AesEncryptContext, GivesThePublishedBlocksAndRefusesOtherKeySizes) {
    std::string const key(64, 'k');
    AesEncryptContext aes;
    for (auto const & vector : read_vectors("aes.txt")) {
        aes.rekey(bytes(vector[0]), size_of(vector[0]));
        EXPECT_EQ(encrypt(aes, vector[1]), vector[2]);
        for (unsigned int const size : {0u, 15u, 17u, 23u, 25u, 31u, 33u, 64u, 0x20000010u, 16u}) {
            auto const * const place = size == 16 ? nullptr : bytes(key);
            auto const info = expect_error(
                [&] { aes.rekey(place, size); }, vxcore::ErrorCode("error.vxcrypto.key.size", true),
                "Key for AES must be 128, 192, or 256 bits (16, 24, or 32 bytes)");
            EXPECT_EQ(info->location().function().view(), "vxcrypto::AesEncryptContext::rekey()");
        }
        EXPECT_EQ(encrypt(aes, vector[1]), vector[2]); // as it was
    }
}

TEST(AesCmacContext, GivesThePublishedMacsCutAnywhereAndInThreads) {
    for (auto const & vector : read_vectors("cmac.txt")) {
        auto const shared = vxcore::make_ref_counted<AesCmacContext::SharedState>(
            bytes(vector[0]), size_of(vector[0]));
        in_four_threads([&vector, shared](int) {
            AesCmacContext cmac(shared);
            std::string message = vector[1];
            for (Pieces const & pieces : cuts_of(message.size())) {
                in_pieces(message, pieces,
                          [&](auto * data, unsigned int n) { cmac.update(data, n); });
                std::string mac(16, '\0');
                cmac.final(mutable_bytes(mac));
                EXPECT_EQ(mac, vector[2]);
                cmac.reset();
            }
        });
    }
}

TEST(AesCtrContext, GivesThePublishedTextsCutAnywhere) {
    for (auto const & vector : read_vectors("ctr.txt")) {
        AesEncryptContext aes;
        aes.rekey(bytes(vector[0]), size_of(vector[0]));
        AesCtrContext ctr(&aes);
        for (Pieces const & pieces : cuts_of(vector[2].size())) {
            std::string text = vector[2];
            auto const process = [&](auto * data, unsigned int n) { ctr.process(data, n); };
            ctr.set_iv(bytes(vector[1]), 16);
            in_pieces(text, pieces, process);
            EXPECT_EQ(text, vector[3]);
            in_pieces(text, {pieces[0] % 16}, process); // what is left of the block is dropped
        }
    }
}

/// The block cipher defines what the blocks of a key stream must be.
TEST(AesCtrContext, PadsOrCutsTheStartValueAndCarriesThroughTheCounter) {
    AesEncryptContext aes;
    aes.rekey(bytes("0123456789abcdef"), 16);
    for (std::string const & end : {"\0"s, "\xF0"s, "\xFA"s}) {
        std::string const iv = std::string(15, '\xFF') + end + "cut off";
        for (unsigned int const size : {0u, 1u, 8u, 15u, 16u, 17u}) {
            std::string counter = iv.substr(0, std::min(size, 16u));
            counter.resize(16);
            std::string text(16 * 20, '\0');
            AesCtrContext ctr(&aes);
            ctr.set_iv(size != 0 ? bytes(iv) : nullptr, size);
            ctr.process(mutable_bytes(text), size_of(text));
            for (std::size_t at = 0; at < text.size(); at += 16) {
                EXPECT_EQ(text.substr(at, 16), encrypt(aes, counter)) << size << ' ' << at;
                for (std::size_t i = 16; i-- != 0 && ++counter[i] == 0;) {
                }
            }
        }
    }
}

TEST(Md5Context, GivesThePublishedDigestsCutAnywhere) {
    for (auto & vector : read_vectors("md5.txt")) {
        for (Pieces const & pieces : cuts_of(vector[0].size())) {
            vxcrypto::Md5Context md5;
            in_pieces(vector[0], pieces, [&](auto * data, unsigned int n) { md5.update(data, n); });
            std::string digest(16, '\0');
            md5.final(mutable_bytes(digest));
            EXPECT_EQ(digest, vector[1]);
        }
    }
}

} // namespace
