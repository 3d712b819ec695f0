#pragma once

#include "vxattribute/attribute_value.h"
#include "vxattribute/secured_value.h"

#include <string>

/// Keeps a value secret, and opens it again, in one call each: AES-EAX with the cipher that fits
/// the key, and no way to accept a forged value.
///
///     vxcrypto::Key const key = vxcrypto::Key::random(); // keep it in a file: vxfile/key_file.h
///     MutableAttributeMap config;
///     config.add("password", seal("correct horse", key, {.annotation = "db password"}));
///     std::string const password = open(config.query("password"), key).get<std::string>();
///
/// Anybody can read annotation and key id, and how large the value is. Nothing says where a sealed
/// value belongs: somebody who can write the file can exchange two of them. If that matters, put
/// the place into the annotation, which is authenticated, and compare it before use. See
/// docs/guide/secrets.md.
///
/// To rotate keys, or to use several, see key_ring.h. For ciphers of your own see SecuredValue.
namespace vxattribute {

/// What anybody can read about a sealed value.
struct SealOptions {
    /// Says what the value is or where it belongs. Authenticated: a change makes opening fail. It
    /// appears in logs.
    std::string annotation = {};

    /// Says which key opens the value. Not authenticated: a hint.
    SecuredValue::KeyId key_id = {};
};

/// Seals a value, which may be a map, under a key of 16 bytes ("EAX_AES128") or 32 ("EAX_AES256").
/// The result is an element type: it can be put into a map as it is.
///
/// @cost   O(size of the marshaled value), with one copy of it, which is not wiped.
/// @raises error.vxattribute.value.secured.keysize: `key` is of another size.
/// @raises error.vxcrypto.randomProvider.failed: there are no random bytes for the nonce.
[[nodiscard]] VXATTRIBUTE_API SecuredValue seal(AttributeValue const & value,
                                                vxcrypto::Key const & key,
                                                SealOptions options = {});

/// Seals a key under another one, so that it can be stored. Its bytes stay nowhere else in memory.
///
/// @param key_to_wrap  Of any size.
/// @param key          The key that seals it, as for `seal`.
/// @raises As `seal`.
[[nodiscard]] VXATTRIBUTE_API SecuredValue seal_key(vxcrypto::Key const & key_to_wrap,
                                                    vxcrypto::Key const & key,
                                                    SealOptions options = {});

/// The value that was sealed. Nothing is deciphered before the bytes and the annotation have been
/// checked. Only the two EAX ciphers are accepted, so what opens was sealed by a holder of the key.
///
/// The second form takes the value of an attribute, which must be one Secured element.
///
/// @cost   O(size), with one copy of the bytes, which is not wiped.
/// @raises error.vxattribute.value.secured.authentication: a wrong key, or parts that were changed.
/// @raises error.vxattribute.value.secured.keysize: `key` is not of the size of the value's cipher.
/// @raises error.vxattribute.value.secured.cipher.unknown: the value names another cipher.
/// @raises error.vxattribute.value.secured.ciphertext: too few bytes.
/// @raises error.vxattribute.value.type.mismatch, .cardinality.expectSingle: the attribute's value
///         is not sealed (an absent one is null), or has several elements.
/// @raises What reading the opened bytes raises.
[[nodiscard]] VXATTRIBUTE_API AttributeValue open(SecuredValue const & sealed,
                                                  vxcrypto::Key const & key);
[[nodiscard]] VXATTRIBUTE_API AttributeValue open(AttributeValue const & sealed,
                                                  vxcrypto::Key const & key);

/// The key that `seal_key` sealed. Check its size if not all sizes suit: whoever holds `key` chose
/// it.
///
/// @raises As `open`; error.vxattribute.value.type.mismatch and .cardinality.expectSingle also if
///         something else than a key was sealed.
[[nodiscard]] VXATTRIBUTE_API vxcrypto::Key open_key(SecuredValue const & sealed,
                                                     vxcrypto::Key const & key);
[[nodiscard]] VXATTRIBUTE_API vxcrypto::Key open_key(AttributeValue const & sealed,
                                                     vxcrypto::Key const & key);

/// The same content, a value or a key, sealed under another key with the same annotation. The
/// content is wiped from memory afterwards.
///
///     sealed = reseal_with(sealed, oldKey, newKey, newKeyId);
///
/// @param new_key_id  The key id of the result; the old one is not kept, since it names `old_key`.
/// @raises As `open` for `old_key` and as `seal` for `new_key`.
[[nodiscard]] VXATTRIBUTE_API SecuredValue reseal_with(SecuredValue const & sealed,
                                                       vxcrypto::Key const & old_key,
                                                       vxcrypto::Key const & new_key,
                                                       SecuredValue::KeyId new_key_id = {});

} // namespace vxattribute
