// The calls for AES blocks are deprecated in favour of OpenSSL's generic ones, which cannot run a
// chain without giving out its blocks and do not share one key schedule between modes.
#define OPENSSL_SUPPRESS_DEPRECATED

#include "vxcrypto/aes.h"

#include "vxcore/error_exception.h"
#include "vxcrypto/aes_block_internal.h"
#include "vxcrypto/cleanse.h"
#include "vxcrypto/error_codes_internal.h"

#include <openssl/aes.h>

namespace vxcrypto {

namespace {

AES_KEY const * schedule_of(impl::CleansedBlock const & block) noexcept {
    return static_cast<AES_KEY const *>(block.data());
}

} // namespace

void AesEncryptContext::rekey(unsigned char const * key, unsigned int size) {
    if (size != 16 && size != 24 && size != 32) {
        vxcore::throw_error(
            error::vxcrypto_key_size,
            vxcore::SourceString("Key for AES must be 128, 192, or 256 bits (16, 24, or 32 bytes)",
                                 true),
            VXCORE_LOCATION("vxcrypto::AesEncryptContext::rekey()"));
    }
    m_schedule.allocate(sizeof(AES_KEY));
    AES_set_encrypt_key(key, static_cast<int>(size * 8), static_cast<AES_KEY *>(m_schedule.data()));
}

void AesEncryptContext::encrypt(unsigned char const * in, unsigned char * out) const noexcept {
    AES_encrypt(in, out, schedule_of(m_schedule));
}

void AesEncryptContext::chain(unsigned char * x, unsigned char const * data,
                              unsigned int blocks) const noexcept {
    for (; blocks != 0; --blocks, data += block_size) {
        AES_encrypt(x, x, schedule_of(m_schedule));
        impl::xor_block(x, data);
    }
}

void AesEncryptContext::xor_key_stream(unsigned char * counter, unsigned char * data,
                                       unsigned int blocks) const noexcept {
    unsigned char keyStream[block_size];
    for (; blocks != 0; --blocks, data += block_size) {
        AES_encrypt(counter, keyStream, schedule_of(m_schedule));
        impl::increment_counter(counter);
        impl::xor_block(data, keyStream);
    }
    cleanse(keyStream, sizeof keyStream);
}

} // namespace vxcrypto
