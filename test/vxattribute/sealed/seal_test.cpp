// The rule under test: the short calls take the cipher from the key and accept no forged value, and
// a ring of keys opens each value with the key that the value names.

#include "sealing.h"
#include "support/allocation.h"
#include "support/expect_error.h"

namespace {

using namespace vxattribute;
using namespace vxtest::sealing;
using vxtest::expect_error;

KeyRing::KeyId const oldId("disk", vxcore::Uuid({1})), newId("disk", vxcore::Uuid({2}));

TEST(Seal, TakesTheCipherOfTheKeyAndOpensStrictly) {
    AttributeValue const value = make_map({{"a", 1}});
    for (auto const & [size, id] : {std::pair(16u, "EAX_AES128"), {32u, "EAX_AES256"}}) {
        Key const key = key_of_size(size);
        SecuredValue const sealed = seal(value, key, {.annotation = "note", .key_id = oldId});
        EXPECT_EQ(sealed.cipher_id(), id);
        EXPECT_EQ(sealed.annotation(), "note");
        EXPECT_EQ(sealed.key_id(), oldId);
        EXPECT_EQ(open(AttributeValue(sealed), key), value);
        EXPECT_TRUE(
            open_key(AttributeValue(seal_key(key_of("data"), key)), key).equal(key_of("data")));
        EXPECT_THROW((void)open(sealed, Key(size)), vxcore::ErrorException);
    }
    expect_error([&] { (void)seal(value, key_of_size(24)); },
                 error::vxattribute_value_secured_keysize,
                 "No cipher takes a key of 24 bytes, only of 16 or 32");
    SecuredValue const forged = seal_note("forged", Key(), "NULL");
    auto const & unknown = error::vxattribute_value_secured_cipher_unknown;
    char const notStrict[] = "Unknown/unsupported cipher: NULL";
    expect_error([&] { (void)open(forged, Key()); }, unknown, notStrict);
    expect_error([&] { (void)open_key(forged, Key()); }, unknown, notStrict);
    expect_error([&] { (void)reseal_with(forged, Key(), key_of_size(16)); }, unknown, notStrict);
    expect_error([&] { (void)open(AttributeValue(), Key(16)); },
                 error::vxattribute_value_type_mismatch,
                 "Attribute value type mismatch.  Expected=Secured, ActualType=Null");
}

TEST(Seal, ResealingKeepsTheAnnotationAndLeavesTheContentNowhere) {
    std::string const secret = "sixteen to watch" + std::string(100, 'k');
    Key const oldKey = key_of_size(16), newKey = key_of_size(32), wrapped = key_of(secret);
    SecuredValue const sealed = seal_note(wrapped, oldKey);
    SecuredValue resealed;
    vxtest::watch_freed_memory(secret.data(), 16);
    auto const reseal = [&] { resealed = reseal_with(sealed, oldKey, newKey, newId); };
    EXPECT_GT(vxtest::fail_each_allocation(reseal, [] {}), 3u);
    EXPECT_EQ(vxtest::freed_with_bytes(), 0u);
    vxtest::watch_freed_memory(nullptr, 0);
    EXPECT_EQ(resealed.annotation(), "note");
    EXPECT_EQ(resealed.key_id(), newId);
    EXPECT_TRUE(open_key(resealed, newKey).equal(wrapped));
}

TEST(KeyRing, SealsWithTheCurrentKeyAndOpensWithTheNamedOne) {
    auto const & unknown = error::vxattribute_value_secured_key_unknown;
    KeyRing source;
    expect_error([&] { (void)source.seal(1); }, unknown,
                 "The key ring has no current key to seal with");
    source.add(oldId, key_of_size(16));
    SecuredValue const first = source.seal("secret", "note");
    source.add(newId, key_of_size(32));
    EXPECT_EQ(*source.current(), oldId);
    source.use(newId);
    KeyRing ring(std::move(source));
    EXPECT_EQ(source.current(), nullptr);
    SecuredValue const second = ring.reseal(first);
    EXPECT_EQ(second.key_id(), newId);
    for (AttributeValue const sealed : {first, second}) {
        EXPECT_EQ(ring.open(sealed), AttributeValue("secret"));
    }
    Key key = key_of_size(16);
    expect_error([&] { ring.add(newId, std::move(key)); },
                 error::vxattribute_value_secured_key_duplicate,
                 "The key ring already has a key with the id "
                 "'disk':02000000-0000-0000-0000-000000000000");
    EXPECT_EQ(key.size(), 16u);
    EXPECT_TRUE(ring.remove(oldId));
    char const missing[] =
        "The key ring has no key with the id 'disk':01000000-0000-0000-0000-000000000000";
    expect_error([&] { (void)ring.open(first); }, unknown, missing);
    expect_error([&] { ring.use(oldId); }, unknown, missing);
    EXPECT_TRUE(ring.remove(newId));
    EXPECT_EQ(ring.current(), nullptr);
}

} // namespace
