#include "vxattribute/error_codes.h"
#include "vxattribute/sealed/memory_wipe_internal.h"
#include "vxattribute/sealed/secured_value_ciphers_internal.h"
#include "vxcore/error_composer.h"
#include "vxcore/error_exception.h"
#include "vxcore/text_conversion.h"
#include "vxcrypto/eax_aes_context.h"
#include "vxcrypto/random_provider.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>

namespace vxattribute::impl {

namespace {

using vxcrypto::EaxAesContext;
using vxserialize::MemoryList;

constexpr unsigned int nonceSize = EaxAesContext::nonce_size;
constexpr unsigned int tagSize = EaxAesContext::tag_size;

void check_key(SecuredValue::ICipher const & cipher, vxcrypto::Key const & key,
               char const * function) {
    if (key.size() == cipher.keysize()) {
        return;
    }
    vxcore::ErrorComposer("Size of key provided does not match cipher.  Cipher={@cipherId}, "
                          "Expexted={@expectedKeysize}, Provided={@keysize}")
        .param("cipherId", cipher.cipher_id())
        .param("expectedKeysize", vxcore::to_string(cipher.keysize()))
        .param("keysize", vxcore::to_string(key.size()))
        .throw_error(error::vxattribute_value_secured_keysize, VXCORE_LOCATION(function));
}

constexpr char const encryptFunction[] =
    "vxattribute::impl::SecuredValueCipherEaxAesBase::encrypt()";
constexpr char const authenticateDecrypt[] =
    "vxattribute::impl::SecuredValueCipherEaxAesBase::authenticate_decrypt()";

[[noreturn]] void throw_about(std::string const & cipherId, char const * message,
                              vxcore::ErrorCode const & code) {
    vxcore::ErrorComposer(message)
        .param("cipherId", cipherId)
        .throw_error(code, VXCORE_LOCATION(authenticateDecrypt));
}

/// Fills `nonce` from `random`. All zeros mean that the provider wrote nothing, which is a failure:
/// two messages under one nonce reveal each other. A working source returns zeros once in 2^128
/// calls.
void make_nonce(vxcrypto::IRandomProvider & random, unsigned char (&nonce)[nonceSize]) {
    static constexpr vxcore::ErrorCode failed("error.vxcrypto.randomProvider.failed", true);
    std::memset(nonce, 0, nonceSize);
    random.generate_random(nonce, nonceSize);
    if (std::all_of(nonce, nonce + nonceSize, [](unsigned char byte) { return byte == 0; })) {
        vxcore::throw_error(
            failed,
            vxcore::SourceString("Random provider failed to generate requested number of bytes",
                                 true),
            VXCORE_LOCATION(encryptFunction));
    }
}

/// Feeds `size` bytes at the cursor to the MAC, without copying them.
void authenticate_bytes(EaxAesContext & eax, vxserialize::MemoryListCursor & at,
                        unsigned int size) {
    while (size != 0) {
        unsigned int run = 0;
        unsigned char const * const data = at.data_at_cursor(run);
        run = std::min(run, size);
        eax.cmac().update(data, run);
        at.cursor_advance(run);
        size -= run;
    }
}

/// Deciphers the bytes between nonce and tag. The sublist shares memory with the sealed list. The
/// first write to shared memory copies it, so the sealed bytes stay as they are.
vxcore::RefCountPtr<MemoryList> decipher(EaxAesContext & eax, MemoryList const & ciphertext) {
    WipedList plaintext(ciphertext.sublist(nonceSize, ciphertext.size() - nonceSize - tagSize));
    for_each_run_from(*plaintext, 0, [&eax](unsigned char * data, unsigned int size) {
        eax.ctr().process(data, size);
    });
    return plaintext.release();
}

} // namespace

SecuredValue::Ciphertext
SecuredValueCipherEaxAesBase::encrypt(SecuredValue::Ciphertext const & plaintext,
                                      std::string const & annotation, vxcrypto::Key const & key,
                                      vxcrypto::IRandomProvider & random) const {
    check_key(*this, key, encryptFunction);
    unsigned char nonce[nonceSize];
    make_nonce(random, nonce);
    EaxAesContext eax(key, nonce, annotation);
    WipedList sealed(MemoryList::create()); // holds the plaintext until it is enciphered
    sealed->append(nonce, nonceSize);
    if (plaintext) {
        sealed->append_defragmented(*plaintext);
    }
    // EAX authenticates the enciphered bytes, so each run is enciphered first.
    for_each_run_from(*sealed, nonceSize, [&eax](unsigned char * data, unsigned int size) {
        eax.ctr().process(data, size);
        eax.cmac().update(data, size);
    });
    eax.finish();
    sealed->append(eax.tag(), tagSize);
    return sealed.release();
}

SecuredValue::Ciphertext
SecuredValueCipherEaxAesBase::decrypt(vxcrypto::Key const & key, std::string const & annotation,
                                      SecuredValue::Ciphertext const & ciphertext) const {
    SecuredValue::Ciphertext plaintext;
    authenticate_decrypt(key, annotation, ciphertext, &plaintext);
    return plaintext;
}

bool SecuredValueCipherEaxAesBase::authenticate(vxcrypto::Key const & key,
                                                std::string const & annotation,
                                                SecuredValue::Ciphertext const & ciphertext) const {
    return authenticate_decrypt(key, annotation, ciphertext, nullptr);
}

bool SecuredValueCipherEaxAesBase::authenticate_decrypt(
    vxcrypto::Key const & key, std::string const & annotation,
    SecuredValue::Ciphertext const & ciphertext, SecuredValue::Ciphertext * plaintext) const {
    check_key(*this, key, authenticateDecrypt);
    if (!ciphertext || ciphertext->size() < nonceSize + tagSize) {
        throw_about(m_id, "Ciphertext size not valid for cipher.  Cipher={@cipherId}",
                    error::vxattribute_value_secured_ciphertext);
    }
    vxserialize::MemoryListCursor at = ciphertext->reader();
    unsigned char nonce[nonceSize];
    at.read_at_cursor(nonce, nonceSize);
    at.cursor_advance(nonceSize);
    EaxAesContext eax(key, nonce, annotation);
    authenticate_bytes(eax, at, ciphertext->size() - nonceSize - tagSize);
    // The tag is complete before any byte is deciphered: forged bytes are never opened.
    eax.finish();
    unsigned char tag[tagSize];
    at.read_at_cursor(tag, tagSize);
    if (!eax.tag_matches(tag)) {
        if (plaintext == nullptr) {
            return false;
        }
        throw_about(m_id, "Ciphertext fails authentication with provided key.  Cipher={@cipherId}",
                    error::vxattribute_value_secured_authentication);
    }
    if (plaintext != nullptr) {
        *plaintext = decipher(eax, *ciphertext);
    }
    return true;
}

void SecuredValueCipherNull::check_keysize(vxcrypto::Key const & key) const {
    check_key(*this, key, "vxattribute::impl::SecuredValueCipherNull::check_keysize()");
}

SecuredValue::Ciphertext SecuredValueCipherNull::encrypt(SecuredValue::Ciphertext const & plaintext,
                                                         std::string const &,
                                                         vxcrypto::Key const & key,
                                                         vxcrypto::IRandomProvider &) const {
    check_keysize(key);
    return plaintext;
}

SecuredValue::Ciphertext
SecuredValueCipherNull::decrypt(vxcrypto::Key const & key, std::string const &,
                                SecuredValue::Ciphertext const & ciphertext) const {
    check_keysize(key);
    return ciphertext;
}

bool SecuredValueCipherNull::authenticate(vxcrypto::Key const & key, std::string const &,
                                          SecuredValue::Ciphertext const &) const {
    check_keysize(key);
    return true;
}

namespace {

SecuredValue::CipherPtr find_among(std::initializer_list<SecuredValue::ICipher const *> ciphers,
                                   std::string const & cipherId) {
    for (SecuredValue::ICipher const * const cipher : ciphers) {
        if (cipher->cipher_id() == cipherId) {
            // Without an owner: the ciphers are static objects.
            return SecuredValue::CipherPtr(cipher, nullptr);
        }
    }
    return SecuredValue::CipherPtr();
}

} // namespace

SecuredValue::CipherPtr DefaultCipherProvider::find_cipher(std::string const & cipherId) const {
    return find_among({&cipherEaxAes128, &cipherEaxAes256, &cipherNull}, cipherId);
}

SecuredValue::CipherPtr StrictCipherProvider::find_cipher(std::string const & cipherId) const {
    return find_among({&cipherEaxAes128, &cipherEaxAes256}, cipherId);
}

} // namespace vxattribute::impl
