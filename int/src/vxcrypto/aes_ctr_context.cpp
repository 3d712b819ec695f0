// Invariant: `m_position` bytes of `m_keyStream` are used; 16 means that none is left, or that none
// has been made yet. `m_counter` is the counter of the next block.

#include "vxcrypto/aes_ctr_context.h"

#include "vxcrypto/aes_block_internal.h"
#include "vxcrypto/cleanse.h"

#include <algorithm>
#include <cstring>

namespace vxcrypto {

namespace {

constexpr unsigned int blockSize = AesEncryptContext::block_size;

} // namespace

AesCtrContext::AesCtrContext(AesEncryptContext const * aes) noexcept : m_aes(aes) {}

AesCtrContext::~AesCtrContext() {
    cleanse(m_keyStream, sizeof m_keyStream);
    cleanse(m_counter, sizeof m_counter);
    cleanse(m_iv, sizeof m_iv);
}

void AesCtrContext::set_iv(unsigned char const * iv, unsigned int size) noexcept {
    std::memset(m_iv, 0, sizeof m_iv);
    std::copy_n(iv, std::min(size, blockSize), m_iv);
    std::memcpy(m_counter, m_iv, sizeof m_counter);
    m_position = blockSize;
}

void AesCtrContext::process(unsigned char * data, unsigned int size) noexcept {
    for (; m_position < blockSize && size != 0; --size) {
        *data++ ^= m_keyStream[m_position++];
    }
    if (size == 0) {
        return;
    }
    // Whole blocks bypass `m_keyStream`.
    if (unsigned int const blocks = size / blockSize; blocks != 0) {
        m_aes->xor_key_stream(m_counter, data, blocks);
        data += blocks * blockSize;
        size -= blocks * blockSize;
    }
    if (size != 0) {
        make_key_stream();
        for (; size != 0; --size) {
            *data++ ^= m_keyStream[m_position++];
        }
    }
}

void AesCtrContext::make_key_stream() noexcept {
    m_aes->encrypt(m_counter, m_keyStream);
    impl::increment_counter(m_counter);
    m_position = 0;
}

} // namespace vxcrypto
