// How sealed values are checked and opened.

#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/error_codes.h"
#include "vxattribute/sealed/key_marshaler_internal.h"
#include "vxattribute/sealed/memory_wipe_internal.h"
#include "vxattribute/secured_value.h"
#include "vxcore/error_composer.h"
#include "vxserialize/memory_reader.h"

namespace vxattribute {

namespace {

vxcore::ErrorComposer unknown_cipher(std::string const & cipherId) {
    vxcore::ErrorComposer composer("Unknown/unsupported cipher: {@cipherId}");
    composer.param("cipherId", cipherId);
    return composer;
}

/// Also of the opening as a key.
vxcore::SourceLocation extract_location() {
    return VXCORE_LOCATION("vxattribute::SecuredValue::extract()");
}

/// A list of its own over the opened bytes, for wiping: a cipher may hand back the stored list,
/// which must stay intact. Where there is no memory for it, the opened list is wiped if it is
/// nobody else's.
vxcore::RefCountPtr<vxserialize::MemoryList>
wipeable_list(SecuredValue::Ciphertext const & opened) {
    if (!opened) {
        return vxserialize::MemoryList::create();
    }
    try {
        return opened->shallow_clone();
    } catch (...) {
        if (opened->has_unique_ref()) {
            impl::wipe(const_cast<vxserialize::MemoryList &>(*opened)); // no list is made const
        }
        throw;
    }
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
        unknown_cipher(m_cipherId)
            .create_transfer(error, error::vxattribute_value_secured_cipher_unknown,
                             extract_location());
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
    vxcrypto::Key result;
    CipherPtr const cipher = provider.find_cipher(m_cipherId);
    if (!cipher) {
        unknown_cipher(m_cipherId)
            .create_transfer(error, error::vxattribute_value_secured_cipher_unknown,
                             extract_location());
        return result;
    }
    // Nothing else refers to its bytes when it is wiped: the opened list and the reader end first.
    vxcore::RefCountPtr<vxserialize::MemoryList> plaintext;
    try {
        plaintext = wipeable_list(cipher->decrypt(key, m_annotation, m_ciphertext));
        vxserialize::MemoryReader reader(plaintext);
        result = impl::read_key_as_binary(reader);
    } catch (std::exception const & e) {
        if (plaintext) {
            impl::wipe(*plaintext);
        }
        if (error != nullptr) {
            *error = vxcore::ErrorInfo::from_exception(e, extract_location());
        }
        throw;
    } catch (...) {
        if (plaintext) {
            impl::wipe(*plaintext);
        }
        throw;
    }
    impl::wipe(*plaintext);
    return result;
}

} // namespace vxattribute
