// Invariant of a context: `m_position` bytes of the current block, 0 to 16, are XORed into
// `m_state`. A whole block stays there unenciphered until more data or `final` comes, since the
// last block of a message is treated differently.

#include "vxcrypto/aes_cmac_context.h"

#include "vxcrypto/aes_block_internal.h"
#include "vxcrypto/cleanse.h"

#include <cstring>

namespace vxcrypto {

namespace {

constexpr unsigned int blockSize = AesEncryptContext::block_size;

/// Multiplies a big-endian block by x in GF(2^128). The block is as secret as the key, so its top
/// bit becomes a mask, not a branch.
void double_block(unsigned char const * block, unsigned char * doubled) noexcept {
    unsigned int const mask = 0u - (block[0] >> 7);
    for (unsigned int i = 0; i + 1 < blockSize; ++i) {
        doubled[i] = static_cast<unsigned char>(block[i] << 1 | block[i + 1] >> 7);
    }
    unsigned int const last = block[blockSize - 1];
    doubled[blockSize - 1] = static_cast<unsigned char>((last << 1) ^ (mask & 0x87));
}

} // namespace

AesCmacContext::SharedState::SharedState(unsigned char const * key, unsigned int size) {
    // RFC 4493, section 2.3: K1 is the doubled cipher of a zero block, K2 is K1 doubled.
    m_aes.rekey(key, size);
    unsigned char l[blockSize] = {};
    m_aes.encrypt(l, l);
    double_block(l, m_k1);
    cleanse(l, sizeof l);
    double_block(m_k1, m_k2);
}

AesCmacContext::SharedState::~SharedState() {
    cleanse(m_k2, sizeof m_k2);
    cleanse(m_k1, sizeof m_k1);
}

AesCmacContext::AesCmacContext(vxcore::RefCountPtr<SharedState> shared) noexcept
    : m_shared(std::move(shared)) {
    reset();
}

AesCmacContext::~AesCmacContext() {
    cleanse(m_state, sizeof m_state);
}

void AesCmacContext::reset() noexcept {
    std::memset(m_state, 0, sizeof m_state);
    m_position = 0;
}

void AesCmacContext::update(unsigned char const * data, unsigned int size) noexcept {
    for (; m_position < blockSize && size != 0; --size) {
        m_state[m_position++] ^= *data++;
    }
    // If bytes are left, the position is 16: a block is pending. `chain` enciphers it before it
    // adds the next one, so the last block is pending again afterwards.
    unsigned int const blocks = size / blockSize;
    if (blocks != 0) {
        m_shared->aes().chain(m_state, data, blocks);
        data += blocks * blockSize;
        size -= blocks * blockSize;
    }
    for (; size != 0; --size) {
        if (m_position == blockSize) {
            m_shared->aes().encrypt(m_state, m_state);
            m_position = 0;
        }
        m_state[m_position++] ^= *data++;
    }
}

void AesCmacContext::final(unsigned char * out) noexcept {
    // RFC 4493, section 2.4: a whole last block is combined with K1. Any other is padded with a
    // single 1 bit and zeros and combined with K2.
    if (m_position == blockSize) {
        impl::xor_block(m_state, m_shared->m_k1);
    } else {
        m_state[m_position] ^= 0x80;
        impl::xor_block(m_state, m_shared->m_k2);
    }
    m_shared->aes().encrypt(m_state, out);
}

} // namespace vxcrypto
