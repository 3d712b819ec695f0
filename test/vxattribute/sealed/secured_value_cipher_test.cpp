// The rule under test: the ciphers produce the published results and refuse every changed bit, and
// a cipher from outside the library does no harm to stored values.

#include "sealing.h"
#include "support/allocation.h"
#include "support/expect_error.h"
#include "support/streams.h"

#include "vxcore/error_codes.h"
#include "vxcrypto/random_provider.h"
#include "vxcrypto/vectors.h"

#include <functional>
#include <stdexcept>

namespace {

using namespace vxattribute;
using namespace vxtest::sealing;
using vxtest::bytes_of;
using vxtest::expect_error;
using vxtest::list_of;

/// Produces known bytes, 16 at most.
struct FixedRandom final : vxcrypto::IRandomProvider {
    explicit FixedRandom(std::string const & text) : bytes(text) {}

    void generate_random(void * buffer, unsigned int size) override {
        ++calls;
        ASSERT_EQ(size, 16u);
        bytes.copy(static_cast<char *>(buffer), size);
    }

    std::string bytes;
    unsigned int calls = 0;
};

TEST(SecuredValueCipher, GivesThePublishedResults) {
    for (auto const & v : vxtest::read_vectors("eax.txt")) {
        if (v[0].size() == 24) {
            continue; // no cipher takes such a key
        }
        auto const & eax = cipher(v[0].size() == 16 ? "EAX_AES128" : "EAX_AES256");
        FixedRandom random(v[1]);
        std::string const expected = v[1] + v[4] + v[5];
        for (unsigned int segment : {1u, 7u, 16u, 1000u}) {
            EXPECT_EQ(bytes_of(eax.encrypt(list_of(v[3], segment), v[2], key_of(v[0]), random)),
                      expected);
            auto const sealed = list_of(expected, segment);
            EXPECT_TRUE(eax.authenticate(key_of(v[0]), v[2], sealed));
            EXPECT_EQ(bytes_of(eax.decrypt(key_of(v[0]), v[2], sealed)), v[3]);
            EXPECT_EQ(bytes_of(sealed), expected);
        }
    }
}

TEST(SecuredValueCipher, AsksForANonceWhenTheKeyFitsAndTakesNoneOfZeros) {
    FixedRandom silent(""); // writes nothing
    auto const seal_with = [&](char const * id, unsigned int keySize) {
        SecuredValue(AttributeValue(7), "", keyId, key_of_size(keySize), cipher(id), silent);
    };
    auto const & keysize = error::vxattribute_value_secured_keysize;
    std::string const text = "Size of key provided does not match cipher.  Cipher=";
    auto const passes = expect_error([&] { seal_with("NULL", 15); }, keysize,
                                     text + "NULL, Expexted=0, Provided=15");
    EXPECT_EQ(passes->location().function().view(),
              "vxattribute::impl::SecuredValueCipherNull::check_keysize()");
    seal_with("NULL", 0);
    auto const misfit = expect_error([&] { seal_with("EAX_AES128", 15); }, keysize,
                                     text + "EAX_AES128, Expexted=16, Provided=15");
    EXPECT_EQ(silent.calls, 0u);
    auto const zeros = expect_error([&] { seal_with("EAX_AES256", 32); },
                                    vxcore::ErrorCode("error.vxcrypto.randomProvider.failed", true),
                                    "Random provider failed to generate requested number of bytes");
    for (auto const & info : {misfit, zeros}) {
        EXPECT_EQ(info->location().function().view(),
                  "vxattribute::impl::SecuredValueCipherEaxAesBase::encrypt()");
    }
}

TEST(SecuredValueCipher, EveryChangedBitIsRefused) {
    for (auto const & [id, step] : {std::pair("EAX_AES128", 1u), {"EAX_AES256", 25u}}) {
        Key const key = key_of_size(cipher(id).keysize());
        for (unsigned int size = 0; size <= 100; size += step) {
            std::string const message(size, 'm');
            std::string parts =
                "note" + bytes_of(cipher(id).encrypt(list_of(message), "note", key,
                                                     *vxcrypto::default_random_provider()));
            ASSERT_EQ(parts.size(), 4 + 32 + size);
            ASSERT_TRUE(value_of("note", id, parts.substr(4)).authenticate(key));
            ASSERT_EQ(bytes_of(cipher(id).decrypt(key, "note", list_of(parts.substr(4)))), message);
            for (std::size_t bit = 0; bit < 8 * parts.size(); ++bit) {
                char & byte = parts[bit / 8];
                byte = static_cast<char>(byte ^ 1 << bit % 8);
                SecuredValue const bad = value_of(parts.substr(0, 4), id, parts.substr(4));
                SecuredValue::ErrorPtr error;
                ASSERT_FALSE(bad.authenticate(key)) << id << ' ' << size << ' ' << bit;
                ASSERT_FALSE(
                    cipher(id).authenticate(key, parts.substr(0, 4), list_of(parts.substr(4), 40)))
                    << id << ' ' << size << ' ' << bit;
                ASSERT_TRUE(bad.extract(key, &error).is_null()) << size << ' ' << bit;
                ASSERT_TRUE(error) << size << ' ' << bit;
                ASSERT_EQ(error->code(), error::vxattribute_value_secured_authentication);
                byte = static_cast<char>(byte ^ 1 << bit % 8);
            }
        }
    }
}

/// A cipher from outside the library, found under every id. Encrypting and decrypting both call
/// `turn`.
struct ForeignCipher final : SecuredValue::ICipher, SecuredValue::ICipherProvider {
    using List = SecuredValue::Ciphertext;

    std::string const & cipher_id() const override { return id; }

    unsigned int keysize() const override { return 0; }

    List encrypt(List const & list, std::string const &, Key const &,
                 vxcrypto::IRandomProvider &) const override {
        return turn(list);
    }

    List decrypt(Key const &, std::string const &, List const & list) const override {
        return turn(list);
    }

    bool authenticate(Key const &, std::string const &, List const &) const override {
        return true;
    }

    SecuredValue::CipherPtr find_cipher(std::string const &) const override {
        return SecuredValue::CipherPtr(this, nullptr);
    }

    std::string id = "foreign";
    std::function<List(List const &)> turn = [](List const & list) { return list; };
};

TEST(ForeignCipher, NullIsAnEmptyList) {
    ForeignCipher foreign;
    SecuredValue const full(key_of("secret"), "note", keyId, Key(), foreign);
    foreign.turn = [](auto const &) { return nullptr; };
    for (SecuredValue const & sealed :
         {SecuredValue(key_of("secret"), "note", keyId, Key(), foreign),
          SecuredValue(AttributeValue("secret"), "note", keyId, Key(), foreign)}) {
        EXPECT_EQ(sealed, value_of("note", "foreign", ""));
    }
    auto const & code = vxserialize::error::vxserialize_data_truncated;
    char const text[] = "Serialized data ends at byte 0 in the middle";
    expect_error([&] { (void)full.extract(Key(), foreign, nullptr); }, code, text);
    SecuredValue::ErrorPtr error;
    SecuredValue::ErrorPtr const raised =
        expect_error([&] { (void)full.extract_binary_as_key(Key(), foreign, &error); }, code, text);
    EXPECT_EQ(error, raised);

    // Conversely, a cipher of the library is found for an empty value and receives null.
    struct Provider final : SecuredValue::ICipherProvider {
        SecuredValue::CipherPtr find_cipher(std::string const &) const override {
            return SecuredValue::CipherPtr(&SecuredValue::default_cipher(), nullptr);
        }
    } const provider;

    Key const key = key_of_size(16);
    for (auto const & open : std::initializer_list<std::function<void()>>{
             [&] { (void)SecuredValue().authenticate(key, provider); },
             [&] { (void)SecuredValue().extract(key, provider, nullptr); },
             [&] { (void)SecuredValue().extract_binary_as_key(key, provider, &error); }}) {
        expect_error(open, error::vxattribute_value_secured_ciphertext,
                     "Ciphertext size not valid for cipher.  Cipher=EAX_AES128");
    }
}

TEST(ForeignCipher, MayHandBackTheStoredList) {
    ForeignCipher const foreign;
    Key const wrapped = key_of("wrapped");
    SecuredValue const key(wrapped, "note", keyId, Key(), foreign);
    SecuredValue const number(AttributeValue(7), "note", keyId, Key(), foreign), copy = number;
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(key.extract_binary_as_key(Key(), foreign, nullptr).equal(wrapped));
        EXPECT_THROW((void)number.extract_binary_as_key(Key(), foreign, nullptr),
                     vxcore::ErrorException);
        EXPECT_EQ(copy.extract(Key(), foreign, nullptr), AttributeValue(7));
    }
}

TEST(ForeignCipher, WhatItRaisesPassesThrough) {
    ForeignCipher foreign;
    SecuredValue const sealed(key_of("secret"), "note", keyId, Key(), foreign);
    SecuredValue::ErrorPtr error;
    foreign.turn = [](auto const &) -> ForeignCipher::List { throw 7; };
    EXPECT_THROW((void)sealed.extract(Key(), foreign, &error), int);
    EXPECT_THROW((void)sealed.extract_binary_as_key(Key(), foreign, &error), int);
    EXPECT_FALSE(error) << "only a std::exception is reported";
    foreign.turn = [](auto const &) -> ForeignCipher::List { throw std::runtime_error("broken"); };
    auto const check = [&error] {
        ASSERT_TRUE(error);
        EXPECT_EQ(error->code(), vxcore::error::vxcore_exception);
        EXPECT_EQ(error->text(), "broken");
        EXPECT_EQ(error->location().function().view(), "vxattribute::SecuredValue::extract()");
    };
    EXPECT_TRUE(sealed.extract(Key(), foreign, &error).is_null());
    check();
    error = nullptr;
    EXPECT_THROW((void)sealed.extract_binary_as_key(Key(), foreign, &error), std::runtime_error);
    check();
    expect_error([&] { (void)sealed.extract(Key(), foreign, nullptr); },
                 vxcore::error::vxcore_exception, "broken");
}

TEST(ForeignCipher, NoFailureLeavesAKeyBehind) {
    std::string const secret = "sixteen to watch" + std::string(100, 'k');
    Key const key = key_of_size(16), wrapped = key_of(secret);
    SecuredValue const sealed = seal_note(wrapped, key);
    auto const cut = list_of(bytes_of(sealed.ciphertext()), 40); // can fail when some is deciphered
    ForeignCipher foreign;
    foreign.turn = [&](auto const &) { return cipher("EAX_AES128").decrypt(key, "note", cut); };
    SecuredValue::ErrorPtr error;
    vxtest::watch_freed_memory(secret.data(), 16);
    for (auto const & action : std::initializer_list<std::function<void()>>{
             [&] { seal_note(wrapped, key); },
             [&] { (void)sealed.extract_binary_as_key(key, &error); },
             [&] { (void)sealed.extract_binary_as_key(key, foreign, &error); }}) {
        unsigned long n = 0;
        for (bool failed = true; failed;) {
            try {
                vxtest::fail_allocation(++n, true);
                action();
                failed = false;
            } catch (int) { // no std::exception, and not turned into one
            }
            vxtest::fail_allocation(0);
        }
        EXPECT_GT(n, 3u);
    }
    // Two segments share one block, which no other list uses.
    foreign.turn = [&](auto const & list) {
        auto const twice = cipher("EAX_AES128").decrypt(key, "note", list)->shallow_clone();
        twice->append(*twice); // only the first element is read
        return twice;
    };
    EXPECT_TRUE(sealed.extract_binary_as_key(key, foreign, &error).equal(wrapped));
    EXPECT_FALSE(error);
    EXPECT_EQ(vxtest::freed_with_bytes(), 0u);
    vxtest::watch_freed_memory(nullptr, 0);
}

} // namespace
