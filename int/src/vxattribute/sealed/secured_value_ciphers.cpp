#include "vxattribute/error_codes.h"
#include "vxattribute/sealed/memory_wipe_internal.h"
#include "vxattribute/sealed/secured_value_ciphers_internal.h"
#include "vxcore/error_composer.h"
#include "vxcore/error_exception.h"
#include "vxcore/text_conversion.h"
#include "vxcrypto/eax_aes.h"
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

/// The bytes of a list for writing: null for an empty list, otherwise those of its one segment.
unsigned char * bytes_of(MemoryList & list) {
    auto const segment = list.segment_write_iterator();
    return segment.at_end() ? nullptr : segment->get_inplace_write_ptr(list.size());
}

/// Checks sealed bytes that are in one piece, and opens a copy of them if `plaintext` is not null.
bool open_piece(vxcrypto::Key const & key, std::string const & annotation,
                unsigned char const * sealed, unsigned int size,
                SecuredValue::Ciphertext * plaintext) {
    unsigned char const * const message = sealed + nonceSize;
    unsigned char const * const tag = message + size;
    if (plaintext == nullptr) {
        return vxcrypto::eax_aes_verify(key, sealed, annotation, message, size, tag);
    }
    vxcore::RefCountPtr<MemoryList> opened = MemoryList::create(message, size);
    bool const matches =
        vxcrypto::eax_aes_open(key, sealed, annotation, message, size, tag, bytes_of(*opened));
    if (matches) {
        *plaintext = std::move(opened);
    }
    return matches;
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
vxcore::RefCountPtr<MemoryList> decipher(EaxAesContext & eax, MemoryList const & ciphertext,
                                         unsigned int size) {
    WipedList plaintext(ciphertext.sublist(nonceSize, size));
    for (auto segment = plaintext->segment_write_iterator(); !segment.at_end(); ++segment) {
        unsigned int const run = segment->size();
        eax.ctr().process(segment->get_inplace_write_ptr(run), run);
    }
    return plaintext.release();
}

/// As `open_piece`, for sealed bytes that are in several segments: each segment is used where it
/// is.
bool open_segments(vxcrypto::Key const & key, std::string const & annotation,
                   MemoryList const & sealed, unsigned int size,
                   SecuredValue::Ciphertext * plaintext) {
    vxserialize::MemoryListCursor at = sealed.reader();
    unsigned char nonce[nonceSize];
    at.read_at_cursor(nonce, nonceSize);
    at.cursor_advance(nonceSize);
    EaxAesContext eax(key, nonce, annotation);
    authenticate_bytes(eax, at, size);
    // The tag is complete before any byte is deciphered: forged bytes are never opened.
    eax.finish();
    unsigned char tag[tagSize];
    at.read_at_cursor(tag, tagSize);
    bool const matches = eax.tag_matches(tag);
    if (matches && plaintext != nullptr) {
        *plaintext = decipher(eax, sealed, size);
    }
    return matches;
}

} // namespace

SecuredValue::Ciphertext
SecuredValueCipherEaxAesBase::encrypt(SecuredValue::Ciphertext const & plaintext,
                                      std::string const & annotation, vxcrypto::Key const & key,
                                      vxcrypto::IRandomProvider & random) const {
    check_key(*this, key, encryptFunction);
    unsigned char nonce[nonceSize];
    make_nonce(random, nonce);
    unsigned int const size = plaintext ? plaintext->size() : 0;
    // Room for all of it, so that it is in one segment. A sum of more than 32 bits makes too little
    // room, but then a list cannot have so many bytes and appending them raises.
    WipedList sealed(MemoryList::create(nonceSize + size + tagSize));
    sealed->append(nonce, nonceSize);
    if (plaintext) {
        sealed->append_defragmented(*plaintext); // until it is enciphered, a failure wipes it
    }
    sealed->append(nonce, tagSize); // to be replaced by the tag
    unsigned char * const message = bytes_of(*sealed) + nonceSize;
    vxcrypto::eax_aes_seal(key, nonce, annotation, message, size, message + size);
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
    unsigned int const size = ciphertext->size() - nonceSize - tagSize;
    auto const first = ciphertext->segment_read_iterator();
    bool const matches = first->size() == ciphertext->size()
                             ? open_piece(key, annotation, first->data(), size, plaintext)
                             : open_segments(key, annotation, *ciphertext, size, plaintext);
    if (!matches && plaintext != nullptr) {
        throw_about(m_id, "Ciphertext fails authentication with provided key.  Cipher={@cipherId}",
                    error::vxattribute_value_secured_authentication);
    }
    return matches;
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

SecuredValue::ICipher const & cipher_for(vxcrypto::Key const & key) {
    for (SecuredValue::ICipher const * const cipher :
         std::initializer_list<SecuredValue::ICipher const *>{&cipherEaxAes128, &cipherEaxAes256}) {
        if (cipher->keysize() == key.size()) {
            return *cipher;
        }
    }
    vxcore::ErrorComposer("No cipher takes a key of {@keysize} bytes, only of 16 or 32")
        .param("keysize", vxcore::to_string(key.size()))
        .throw_error(error::vxattribute_value_secured_keysize,
                     VXCORE_LOCATION("vxattribute::impl::cipher_for()"));
}

SecuredValue::CipherPtr DefaultCipherProvider::find_cipher(std::string const & cipherId) const {
    return find_among({&cipherEaxAes128, &cipherEaxAes256, &cipherNull}, cipherId);
}

SecuredValue::CipherPtr StrictCipherProvider::find_cipher(std::string const & cipherId) const {
    return find_among({&cipherEaxAes128, &cipherEaxAes256}, cipherId);
}

} // namespace vxattribute::impl
