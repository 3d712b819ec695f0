// How sealed values are checked, opened and sealed anew.

#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/error_codes.h"
#include "vxattribute/seal.h"
#include "vxattribute/sealed/key_marshaler_internal.h"
#include "vxattribute/sealed/memory_wipe_internal.h"
#include "vxattribute/sealed/secured_value_ciphers_internal.h"
#include "vxcore/error_composer.h"
#include "vxcrypto/random_provider.h"
#include "vxserialize/memory_reader.h"

namespace vxattribute {

namespace {

vxcore::ErrorComposer unknown_cipher(std::string const & cipherId) {
    vxcore::ErrorComposer composer("Unknown/unsupported cipher: {@cipherId}");
    composer.param("cipherId", cipherId);
    return composer;
}

/// The location of failures in `extract` and in `extract_binary_as_key`.
vxcore::SourceLocation extract_location() {
    return VXCORE_LOCATION("vxattribute::SecuredValue::extract()");
}

/// Stores the failure in `*error`, or raises it when `error` is null.
void report_unknown_cipher(std::string const & cipherId, SecuredValue::ErrorPtr * error) {
    unknown_cipher(cipherId).create_transfer(error, error::vxattribute_value_secured_cipher_unknown,
                                             extract_location());
}

} // namespace

bool SecuredValue::authenticate(vxcrypto::Key const & key) const {
    return authenticate(key, default_cipher_provider());
}

bool SecuredValue::authenticate(vxcrypto::Key const & key, ICipherProvider const & provider) const {
    CipherPtr const cipher = provider.find_cipher(m_cipherId);
    if (!cipher) {
        unknown_cipher(m_cipherId)
            .throw_error(error::vxattribute_value_secured_cipher_unknown,
                         VXCORE_LOCATION("vxattribute::SecuredValue::authenticate()"));
    }
    return cipher->authenticate(key, m_annotation, m_ciphertext);
}

AttributeValue SecuredValue::extract(vxcrypto::Key const & key, ErrorPtr * error) const {
    return extract(key, default_cipher_provider(), error);
}

AttributeValue SecuredValue::extract(vxcrypto::Key const & key, ICipherProvider const & provider,
                                     ErrorPtr * error) const {
    AttributeValue value;
    CipherPtr const cipher = provider.find_cipher(m_cipherId);
    if (!cipher) {
        report_unknown_cipher(m_cipherId, error);
        return value;
    }
    ErrorPtr failure;
    try {
        vxserialize::MemoryReader reader(cipher->decrypt(key, m_annotation, m_ciphertext));
        read_attribute_value(reader, value);
        return value;
    } catch (std::exception const & e) {
        failure = vxcore::ErrorInfo::from_exception(e, extract_location());
    }
    if (error == nullptr) {
        vxcore::throw_error(std::move(failure));
    }
    *error = std::move(failure);
    return value;
}

vxcrypto::Key SecuredValue::extract_binary_as_key(vxcrypto::Key const & key,
                                                  ErrorPtr * error) const {
    return extract_binary_as_key(key, default_cipher_provider(), error);
}

vxcrypto::Key SecuredValue::extract_binary_as_key(vxcrypto::Key const & key,
                                                  ICipherProvider const & provider,
                                                  ErrorPtr * error) const {
    CipherPtr const cipher = provider.find_cipher(m_cipherId);
    if (!cipher) {
        report_unknown_cipher(m_cipherId, error);
        return vxcrypto::Key();
    }
    try {
        // In this order: the reader is destroyed before the plaintext is wiped, and the opened list
        // is a temporary that is destroyed even earlier.
        impl::WipedList const plaintext =
            impl::wipeable(cipher->decrypt(key, m_annotation, m_ciphertext));
        vxserialize::MemoryReader reader(plaintext.get());
        return impl::read_key_as_binary(reader);
    } catch (std::exception const & e) {
        if (error != nullptr) {
            *error = vxcore::ErrorInfo::from_exception(e, extract_location());
        }
        throw;
    }
}

SecuredValue reseal_with(SecuredValue const & sealed, vxcrypto::Key const & old_key,
                         vxcrypto::Key const & new_key, SecuredValue::KeyId new_key_id) {
    SecuredValue::ICipher const & newCipher = impl::cipher_for(new_key);
    SecuredValue::CipherPtr const cipher =
        SecuredValue::strict_cipher_provider().find_cipher(sealed.m_cipherId);
    if (!cipher) {
        report_unknown_cipher(sealed.m_cipherId, nullptr);
    }
    // The content stays as bytes, whatever it is: a key in it must not become a value, which is not
    // wiped.
    impl::WipedList const content =
        impl::wipeable(cipher->decrypt(old_key, sealed.m_annotation, sealed.m_ciphertext));
    SecuredValue result;
    result.m_annotation = sealed.m_annotation;
    result.m_cipherId = newCipher.cipher_id();
    result.m_keyId = std::move(new_key_id);
    result.seal(content.get(), new_key, newCipher, *vxcrypto::default_random_provider());
    return result;
}

} // namespace vxattribute
