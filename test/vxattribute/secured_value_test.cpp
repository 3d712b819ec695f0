// The rule under test: a sealed value opens with its key and its annotation only, nothing is
// deciphered before the check, and no key is left in memory that was given back.

#include "support/allocation.h"
#include "support/expect_error.h"
#include "support/streams.h"

#include "vxattribute/vxattribute.h"
#include "vxcrypto/random_provider.h"
#include "vxcrypto/vectors.h"

#include <sstream>

namespace {

using namespace vxattribute;
using vxcrypto::Key;
using vxtest::bytes_of;
using vxtest::expect_error;
using vxtest::list_of;

SecuredValue::ICipher const & cipher(std::string const & id) {
    return *SecuredValue::default_cipher_provider().find_cipher(id);
}

Key key_of(std::string const & bytes) {
    return Key(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

Key key_of_size(unsigned int size) {
    return key_of(std::string("a key that is long enough for 32").substr(0, size));
}

SecuredValue::KeyId const keyId("category", vxcore::Uuid());

template <typename Secret>
SecuredValue seal(Secret const & secret, Key const & key, std::string const & id = "EAX_AES128") {
    return SecuredValue(secret, "note", keyId, key, cipher(id));
}

/// Gives out bytes that are known before.
struct FixedRandom final : vxcrypto::IRandomProvider {
    explicit FixedRandom(std::string const & text) : bytes(text) {}

    void generate_random(void * buffer, unsigned int size) override {
        ASSERT_EQ(size, bytes.size());
        bytes.copy(static_cast<char *>(buffer), size);
    }

    std::string bytes;
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

TEST(SecuredValue, EveryChangedBitIsRefused) {
    Key const key = key_of_size(16);
    for (unsigned int size = 0; size <= 100; ++size) {
        SecuredValue const good = seal(std::string(size, 'm'), key);
        ASSERT_TRUE(good.authenticate(key));
        std::string parts = good.annotation() + bytes_of(good.ciphertext());
        for (std::size_t bit = 0; bit < 8 * parts.size(); ++bit) {
            char & byte = parts[bit / 8];
            byte = static_cast<char>(byte ^ 1 << bit % 8);
            SecuredValue const bad = value_of(parts.substr(0, 4), "EAX_AES128", parts.substr(4));
            SecuredValue::ErrorPtr error;
            ASSERT_FALSE(bad.authenticate(key)) << size << ' ' << bit;
            ASSERT_TRUE(bad.extract(key, &error).is_null()) << size << ' ' << bit;
            ASSERT_EQ(error->code(), error::vxattribute_value_secured_authentication);
            byte = static_cast<char>(byte ^ 1 << bit % 8);
        }
    }
}

TEST(SecuredValue, OpensToWhatWasSealed) {
    for (char const * id : {"EAX_AES128", "EAX_AES256"}) {
        Key const key = key_of_size(cipher(id).keysize());
        for (AttributeValue const & value :
             {AttributeValue(), AttributeValue(5), AttributeValue(std::string(100'000, 'x')),
              AttributeValue(make_map({{"a", make_list<double>({1, 2})}}))}) {
            SecuredValue const sealed = seal(value, key, id), copy = sealed;
            std::string const before = bytes_of(sealed.ciphertext());
            EXPECT_TRUE(sealed.authenticate(key, SecuredValue::strict_cipher_provider()));
            EXPECT_EQ(sealed.extract(key, nullptr), value);
            EXPECT_EQ(bytes_of(copy.ciphertext()), before);
            vxserialize::MemoryWriter writer;
            write_attribute_value(writer, value);
            EXPECT_EQ(before.size(), writer.size() + 32u);
            SecuredValue const again = seal(value, key, id); // with a nonce of its own
            EXPECT_FALSE(again == sealed);
            EXPECT_NE(again.hash(), sealed.hash());
        }
    }
}

TEST(SecuredValue, OnlyOneBinaryIsAKey) {
    Key const key = key_of_size(16), wrapped = key_of("wrapped");
    AttributeValue const binary = BinaryValue(wrapped.data(), wrapped.size());
    for (SecuredValue const & sealed : {seal(wrapped, key), seal(binary, key)}) {
        EXPECT_TRUE(sealed.extract_binary_as_key(key, nullptr).equal(wrapped));
        EXPECT_EQ(sealed.extract(key, nullptr), binary);
    }
    for (AttributeValue const & value :
         {AttributeValue(ValueTypeId::typeBinary),
          make_list<BinaryValue>({BinaryValue(1), BinaryValue(2)}), AttributeValue(),
          AttributeValue(true), AttributeValue(1), AttributeValue(1.5), AttributeValue("text"),
          AttributeValue(vxcore::Uuid()), AttributeValue(vxcore::AbsoluteTime(1)),
          AttributeValue(vxcore::RelativeTime(1)), AttributeValue(AttributeMap()),
          make_list<bool>({true, false})}) {
        bool const isBinary = value.type() == ValueTypeId::typeBinary;
        std::string const text =
            isBinary ? "Only scalar binary attributes can be read as Key"
                     : "Only Binary attribute values can be read as Key.  TypeFound=" +
                           value.type().name();
        SecuredValue const sealed = seal(value, key);
        SecuredValue::ErrorPtr error;
        auto const raised =
            expect_error([&] { sealed.extract_binary_as_key(key, &error); },
                         isBinary ? error::vxattribute_value_cardinality_expectSingle
                                  : error::vxattribute_value_type_mismatch,
                         text);
        EXPECT_EQ(error, raised) << "reported and raised";
        EXPECT_EQ(sealed.extract(key, nullptr), value);
    }
}

TEST(SecuredValue, SaysWhyItDoesNotOpen) {
    using namespace error;
    Key const key = key_of_size(16), shorter = key_of_size(15), wrong = key_of("a wrong key, 16B");
    SecuredValue const sealed = seal("secret", key);
    std::string const bytes = bytes_of(sealed.ciphertext());

    struct {
        SecuredValue value;
        Key const & key;
        vxcore::ErrorCode const & code;
        char const * text;
    } const rows[] = {
        {sealed, wrong, vxattribute_value_secured_authentication,
         "Ciphertext fails authentication with provided key.  Cipher=EAX_AES128"},
        {sealed, shorter, vxattribute_value_secured_keysize,
         "Size of key provided does not match cipher.  Cipher=EAX_AES128, Expexted=16, "
         "Provided=15"},
        {value_of("note", "EAX_AES128", bytes.substr(0, 31)), key,
         vxattribute_value_secured_ciphertext,
         "Ciphertext size not valid for cipher.  Cipher=EAX_AES128"},
        {value_of("note", "EAX_AES192", bytes), key, vxattribute_value_secured_cipher_unknown,
         "Unknown/unsupported cipher: EAX_AES192"},
        {{}, key, vxattribute_value_secured_cipher_unknown, "Unknown/unsupported cipher: "}};

    SecuredValue::ErrorPtr error;
    for (auto const & row : rows) {
        expect_error([&] { row.value.extract(row.key, nullptr); }, row.code, row.text);
        EXPECT_TRUE(row.value.extract(row.key, &error).is_null());
        EXPECT_EQ(error->text(), row.text);
        if (&row.key != &wrong) {
            expect_error([&] { row.value.authenticate(row.key); }, row.code, row.text);
        }
    }
    // A key is only reported when the cipher is not known.
    EXPECT_TRUE(SecuredValue().extract_binary_as_key(key, &error).empty());
    EXPECT_EQ(error->code(), vxattribute_value_secured_cipher_unknown);
}

TEST(SecuredValue, NoOtherCipherIdIsAWayIn) {
    std::string const ids[] = {"EAX_AES128", "EAX_AES256", "NULL"};
    SecuredValue::ErrorPtr error;
    for (std::string const & sealedWith : ids) {
        Key const key = key_of_size(cipher(sealedWith).keysize());
        SecuredValue const sealed = seal(7, key, sealedWith);
        EXPECT_EQ(sealed.extract(key, nullptr), AttributeValue(7));
        for (std::string const & id : ids) {
            SecuredValue const renamed = value_of("note", id, bytes_of(sealed.ciphertext()));
            // Who has no key says that anything will do.
            for (unsigned int size = id == "NULL" ? 16 : 0; size <= 32; size += 16) {
                bool const mayOpen = id == sealedWith && size == key.size();
                EXPECT_EQ(renamed.extract(key_of_size(size), &error).is_null(), !mayOpen)
                    << sealedWith << ' ' << id << ' ' << size;
            }
        }
    }
    value_of("", "NULL", "x").extract(Key(), SecuredValue::strict_cipher_provider(), &error);
    EXPECT_EQ(error->code(), error::vxattribute_value_secured_cipher_unknown);
}

TEST(SecuredValue, AFailedSetLeavesTheOldValue) {
    Key const key = key_of_size(16);
    SecuredValue value = seal(1, key);
    SecuredValue const before = value;
    std::string const note(40, 'a');
    EXPECT_GT(vxtest::fail_each_allocation(
                  [&] { value.set(2, note, keyId, key, SecuredValue::default_cipher()); },
                  [&] { ASSERT_EQ(value, before); }),
              3u);
    EXPECT_EQ(value.extract(key, nullptr), AttributeValue(2));
}

TEST(SecuredValue, NoKeyStaysInMemory) {
    std::string const secret = "sixteen to watch" + std::string(246, 'k'); // two segments of a list
    for (std::size_t size : {16u, 250u, 262u}) {
        for (char const * id : {"EAX_AES128", "NULL"}) {
            Key const key = key_of_size(cipher(id).keysize());
            Key const wrapped = key_of(secret.substr(0, size));
            SecuredValue value;
            Key opened;
            vxtest::watch_freed_memory(secret.data(), 16);
            vxtest::fail_each_allocation([&] { value = seal(wrapped, key, id); }, [] {});
            vxtest::fail_each_allocation(
                [&] { opened = value.extract_binary_as_key(key, nullptr); }, [] {});
            EXPECT_TRUE(opened.equal(wrapped));
            opened = Key();
            EXPECT_EQ(vxtest::freed_with_bytes(), 0u) << id << ' ' << size;
            EXPECT_TRUE(value.extract_binary_as_key(key, nullptr).equal(wrapped)); // still intact
        }
    }
    delete new std::string(secret); // the watch works: an ordinary string leaves its bytes behind
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
    vxcore::Uuid const uuid({1});
    EXPECT_LT(KeyId("z", vxcore::Uuid()), KeyId("a", uuid));
    EXPECT_LT(KeyId("a", uuid), KeyId("b", uuid));
    EXPECT_EQ(value_of("\x80", "\x01", "\xff").hash(), 0xE0E1B4D6u);
}

TEST(SecuredValue, ShowsItsFrameOnly) {
    std::ostringstream stream;
    stream << SecuredValue("secret", std::string(300, 'n'), keyId, key_of_size(16),
                           SecuredValue::default_cipher());
    EXPECT_EQ(stream.str(), "<\"" + std::string(256, 'n') +
                                "\"...(+44) (cipher=EAX_AES128, "
                                "keyid='category':00000000-0000-0000-0000-000000000000, "
                                "datasize=39)>");
    EXPECT_EQ(to_text(AttributeValue(SecuredValue())),
              "[Secured: {<\"\" (cipher=, keyid='':00000000-0000-0000-0000-000000000000, "
              "datasize=0)>}]");
}

} // namespace
