// The rule under test: a sealed value opens with its key and its annotation only, nothing is
// deciphered before the check, and no key is left in memory that was given back.

#include "support/allocation.h"
#include "support/expect_error.h"
#include "support/streams.h"

#include "vxattribute/vxattribute.h"
#include "vxcrypto/random_provider.h"
#include "vxcrypto/vectors.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using namespace vxattribute;
using vxcrypto::Key;
using vxtest::bytes_of;
using vxtest::expect_error;
using vxtest::list_of;

SecuredValue::ICipher const & cipher(char const * id) {
    return *SecuredValue::default_cipher_provider().find_cipher(id);
}

Key key_of(std::string const & bytes) {
    return Key(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

Key key_of_size(unsigned int size) {
    return key_of(std::string("a key that is long enough for 32").substr(0, size));
}

SecuredValue::KeyId const keyId("category", vxcore::Uuid());

/// Gives out bytes that are known before.
class FixedRandom final : public vxcrypto::IRandomProvider {
  public:
    explicit FixedRandom(std::string bytes) : m_bytes(std::move(bytes)) {}

    void generate_random(void * buffer, unsigned int size) override {
        ASSERT_EQ(size, m_bytes.size());
        m_bytes.copy(static_cast<char *>(buffer), size);
    }

  private:
    std::string m_bytes;
};

/// A value of these parts, as it may come from anybody.
SecuredValue value_of(std::string const & annotation, std::string const & cipherId,
                      std::string const & sealed) {
    vxserialize::MemoryWriter writer;
    writer.begin_record();
    writer << annotation << cipherId;
    keyId.write(writer);
    writer.write_binary(sealed.data(), static_cast<unsigned int>(sealed.size()));
    writer.end_record();
    vxserialize::MemoryReader reader = writer.reader();
    return SecuredValue(reader);
}

TEST(SecuredValueCipher, GivesThePublishedResults) {
    int used = 0;
    for (auto const & v : vxtest::read_vectors("eax.txt")) {
        if (v[0].size() == 24) {
            continue; // no cipher takes such a key
        }
        ++used;
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
    EXPECT_GE(used, 6);
}

/// True when the value neither passes the check nor opens.
bool is_refused(SecuredValue const & value, Key const & key) {
    SecuredValue::ErrorPtr error;
    return !value.authenticate(key) && value.extract(key, &error).is_null() &&
           error->code() == error::vxattribute_value_secured_authentication;
}

TEST(SecuredValue, EveryChangedBitIsRefused) {
    Key const key = key_of_size(16);
    FixedRandom random("sixteen byte non");
    for (unsigned int size = 0; size <= 100; ++size) {
        SecuredValue const good(std::string(size, 'm'), "note", keyId, key,
                                SecuredValue::default_cipher(), random);
        ASSERT_TRUE(good.authenticate(key));
        std::string const sealed = bytes_of(good.ciphertext());
        std::string const parts = good.annotation() + sealed;
        for (std::size_t bit = 0; bit < 8 * parts.size(); ++bit) {
            std::string changed = parts;
            changed[bit / 8] = static_cast<char>(changed[bit / 8] ^ 1 << bit % 8);
            ASSERT_TRUE(is_refused(
                value_of(changed.substr(0, 4), good.cipher_id(), changed.substr(4)), key))
                << size << ' ' << bit;
        }
    }
}

TEST(SecuredValue, OpensToWhatWasSealed) {
    for (char const * id : {"EAX_AES128", "EAX_AES256"}) {
        Key const key = key_of_size(cipher(id).keysize());
        for (AttributeValue const & value :
             {AttributeValue(), AttributeValue(5), AttributeValue(std::string(100'000, 'x')),
              AttributeValue(make_map({{"a", make_list<double>({1, 2})}}))}) {
            SecuredValue const sealed(value, "note", keyId, key, cipher(id));
            SecuredValue const copy = sealed;
            std::string const before = bytes_of(sealed.ciphertext());
            EXPECT_TRUE(sealed.authenticate(key, SecuredValue::strict_cipher_provider()));
            EXPECT_EQ(sealed.extract(key, nullptr), value);
            EXPECT_EQ(bytes_of(copy.ciphertext()), before);
            vxserialize::MemoryWriter writer;
            write_attribute_value(writer, value);
            EXPECT_EQ(before.size(), writer.size() + 32u);
            // Each sealing has a nonce of its own.
            SecuredValue const again(value, "note", keyId, key, cipher(id));
            EXPECT_FALSE(again == sealed);
            EXPECT_NE(again.hash(), sealed.hash());
        }
    }
}

TEST(SecuredValue, KeysAndBinariesAreOneForm) {
    Key const key = key_of_size(16);
    Key const wrapped = key_of("wrapped");
    SecuredValue const fromKey(wrapped, "", keyId, key, SecuredValue::default_cipher());
    EXPECT_TRUE(fromKey.extract_binary_as_key(key, nullptr).equal(wrapped));
    BinaryValue const binary(wrapped.data(), wrapped.size());
    EXPECT_EQ(fromKey.extract(key, nullptr), AttributeValue(binary));
    SecuredValue const fromValue(AttributeValue(binary), "", keyId, key,
                                 SecuredValue::default_cipher());
    EXPECT_TRUE(fromValue.extract_binary_as_key(key, nullptr).equal(wrapped));
}

TEST(SecuredValue, OnlyOneBinaryIsAKey) {
    char const * const notScalar = "Only scalar binary attributes can be read as Key";
    std::string const typed = "Only Binary attribute values can be read as Key.  TypeFound=";
    Key const key = key_of_size(16);
    auto const check = [&](AttributeValue const & value, std::string const & text) {
        SecuredValue const sealed(value, "", keyId, key, SecuredValue::default_cipher());
        SecuredValue::ErrorPtr error;
        // The failure is reported and raised.
        auto const raised =
            expect_error([&] { sealed.extract_binary_as_key(key, &error); },
                         text == notScalar ? error::vxattribute_value_cardinality_expectSingle
                                           : error::vxattribute_value_type_mismatch,
                         text.c_str());
        EXPECT_EQ(error, raised);
        EXPECT_EQ(sealed.extract(key, nullptr), value);
    };
    check(AttributeValue(ValueTypeId::typeBinary), notScalar);
    check(make_list<BinaryValue>({BinaryValue(1), BinaryValue(2)}), notScalar);
    for (AttributeValue const & value :
         {AttributeValue(), AttributeValue(true), AttributeValue(1), AttributeValue(1.5),
          AttributeValue("text"), AttributeValue(vxcore::Uuid()),
          AttributeValue(vxcore::AbsoluteTime(1)), AttributeValue(vxcore::RelativeTime(1)),
          AttributeValue(AttributeMap()), make_list<bool>({true, false})}) {
        check(value, typed + value.type().name());
    }
}

TEST(SecuredValue, SaysWhyItDoesNotOpen) {
    Key const key = key_of_size(16);
    SecuredValue const sealed("secret", "note", keyId, key, SecuredValue::default_cipher());
    std::string const bytes = bytes_of(sealed.ciphertext());
    auto const expect_all = [](SecuredValue const & value, Key const & with,
                               vxcore::ErrorCode const & code, char const * text) {
        expect_error([&] { value.extract(with, nullptr); }, code, text);
        SecuredValue::ErrorPtr error;
        EXPECT_TRUE(value.extract(with, &error).is_null());
        EXPECT_EQ(error->text(), text);
        if (code != error::vxattribute_value_secured_authentication) {
            expect_error([&] { value.authenticate(with); }, code, text);
        }
    };
    expect_all(sealed, key_of("a wrong key, 16B"), error::vxattribute_value_secured_authentication,
               "Ciphertext fails authentication with provided key.  Cipher=EAX_AES128");
    expect_all(sealed, key_of_size(15), error::vxattribute_value_secured_keysize,
               "Size of key provided does not match cipher.  "
               "Cipher=EAX_AES128, Expexted=16, Provided=15");
    expect_all(value_of("note", "EAX_AES128", bytes.substr(0, 31)), key,
               error::vxattribute_value_secured_ciphertext,
               "Ciphertext size not valid for cipher.  Cipher=EAX_AES128");
    expect_all(value_of("note", "EAX_AES192", bytes), key,
               error::vxattribute_value_secured_cipher_unknown,
               "Unknown/unsupported cipher: EAX_AES192");
    expect_all(SecuredValue(), key, error::vxattribute_value_secured_cipher_unknown,
               "Unknown/unsupported cipher: ");
    // A key is only reported when the cipher is not known.
    SecuredValue::ErrorPtr error;
    EXPECT_TRUE(SecuredValue().extract_binary_as_key(key, &error).empty());
    EXPECT_EQ(error->code(), error::vxattribute_value_secured_cipher_unknown);
}

TEST(SecuredValue, NoOtherCipherIdIsAWayIn) {
    char const * const ids[] = {"EAX_AES128", "EAX_AES256", "NULL"};
    for (char const * sealedWith : ids) {
        Key const key = key_of_size(cipher(sealedWith).keysize());
        SecuredValue const sealed(7, "note", keyId, key, cipher(sealedWith));
        EXPECT_EQ(sealed.extract(key, nullptr), AttributeValue(7));
        for (char const * id : ids) {
            SecuredValue const renamed = value_of("note", id, bytes_of(sealed.ciphertext()));
            for (unsigned int size : {0u, 16u, 32u}) {
                if (size == 0 && std::string(id) == "NULL") {
                    continue; // who has no key says that anything will do
                }
                SecuredValue::ErrorPtr error;
                AttributeValue const opened = renamed.extract(key_of_size(size), &error);
                bool const mayOpen = std::string(id) == sealedWith && size == key.size();
                EXPECT_EQ(opened.is_null(), !mayOpen) << sealedWith << ' ' << id << ' ' << size;
            }
        }
    }
    SecuredValue::ErrorPtr error;
    value_of("", "NULL", "x").extract(Key(), SecuredValue::strict_cipher_provider(), &error);
    EXPECT_EQ(error->code(), error::vxattribute_value_secured_cipher_unknown);
}

TEST(SecuredValue, AFailedSetLeavesTheOldValue) {
    Key const key = key_of_size(16);
    SecuredValue value(1, "note", keyId, key, SecuredValue::default_cipher());
    SecuredValue const before = value;
    EXPECT_GT(
        vxtest::fail_each_allocation(
            [&] { value.set(2, std::string(40, 'a'), keyId, key, SecuredValue::default_cipher()); },
            [&] { ASSERT_EQ(value, before); }),
        3u);
    EXPECT_EQ(value.extract(key, nullptr), AttributeValue(2));
}

TEST(SecuredValue, NoKeyStaysInMemory) {
    std::string const secret = "a key to be kept: it fills more than a segment of a memory list "
                               "and so lies in two or more of them, which is what large ones do."
                               "0123456789 0123456789 0123456789 0123456789 0123456789 0123456789 "
                               "0123456789 0123456789 0123456789 0123456789 0123456789 0123456789 ";
    for (std::size_t size : {16u, 250u, 262u}) {
        for (char const * id : {"EAX_AES128", "NULL"}) {
            Key const key = key_of_size(cipher(id).keysize());
            Key const wrapped = key_of(secret.substr(0, size));
            SecuredValue value;
            vxtest::watch_freed_memory(secret.data(), 16);
            vxtest::fail_each_allocation(
                [&] { value = SecuredValue(wrapped, "", keyId, key, cipher(id)); }, [] {});
            Key opened;
            vxtest::fail_each_allocation(
                [&] { opened = value.extract_binary_as_key(key, nullptr); }, [] {});
            EXPECT_TRUE(opened.equal(wrapped));
            opened = Key();
            EXPECT_EQ(vxtest::freed_with_bytes(), 0u) << id << ' ' << size;
            EXPECT_TRUE(value.extract_binary_as_key(key, nullptr).equal(wrapped)); // still intact
            vxtest::watch_freed_memory(nullptr, 0);
        }
    }
    // The watch works: an ordinary string leaves its bytes behind.
    vxtest::watch_freed_memory(secret.data(), 16);
    delete new std::string(secret);
    EXPECT_NE(vxtest::freed_with_bytes(), 0u);
    vxtest::watch_freed_memory(nullptr, 0);
}

TEST(SecuredValue, ComparesByAllItsParts) {
    SecuredValue const parts[] = {value_of("a", "c", "1"), value_of("b", "c", "1"),
                                  value_of("a", "d", "1"), value_of("a", "c", "2")};
    for (SecuredValue const & a : parts) {
        for (SecuredValue const & b : parts) {
            EXPECT_EQ(a == b, &a == &b);
            EXPECT_EQ(a.compare(b) == 0, &a == &b);
            EXPECT_EQ(a.hash() == b.hash(), &a == &b);
        }
    }
    EXPECT_LT(parts[2], parts[3]); // the sealed bytes come first
    EXPECT_LT(parts[0], parts[1]);
    // No sealed bytes at all and none of them are alike.
    vxserialize::MemoryWriter writer;
    SecuredValue().write(writer);
    vxserialize::MemoryReader reader = writer.reader();
    EXPECT_EQ(SecuredValue(reader), SecuredValue());
    using KeyId = SecuredValue::KeyId;
    vxcore::Uuid uuid;
    ASSERT_TRUE(vxcore::Uuid::parse("00112233-4455-6677-8899-aabbccddeeff", uuid));
    EXPECT_LT(KeyId("z", vxcore::Uuid()), KeyId("a", uuid));
    EXPECT_LT(KeyId("a", uuid), KeyId("b", uuid));
    EXPECT_EQ(value_of("\x80", "\x01", "\xff").hash(), 0xE0E1B4D6u);
}

TEST(SecuredValue, ShowsItsFrameOnly) {
    std::ostringstream stream;
    SecuredValue const sealed("secret", std::string(300, 'n'), keyId, key_of_size(16),
                              SecuredValue::default_cipher());
    stream << sealed;
    EXPECT_EQ(stream.str(), "<\"" + std::string(256, 'n') +
                                "\"...(+44) (cipher=EAX_AES128, "
                                "keyid='category':00000000-0000-0000-0000-000000000000, "
                                "datasize=39)>");
    EXPECT_EQ(to_text(AttributeValue(SecuredValue())),
              "[Secured: {<\"\" (cipher=, keyid='':00000000-0000-0000-0000-000000000000, "
              "datasize=0)>}]");
}

} // namespace
