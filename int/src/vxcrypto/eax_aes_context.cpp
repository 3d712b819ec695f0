#include "vxcrypto/eax_aes_context.h"

#include "vxcore/text_size.h"
#include "vxcrypto/aes_block_internal.h"
#include "vxcrypto/cleanse.h"
#include "vxcrypto/constant_time.h"

namespace vxcrypto {

EaxAesContext::EaxAesContext(Key const & key, unsigned char const * nonce, std::string_view header)
    : m_cmac(vxcore::make_ref_counted<AesCmacContext::SharedState>(key.data(), key.size())),
      m_ctr(&m_cmac.shared().aes()) {
    // First, because it may raise: the destructor, which wipes the tag, does not run then.
    unsigned int const headerSize = vxcore::text_size(header.size());

    // The tag is the XOR of three MACs: number 0 over the nonce, 1 over the header, and 2 over the
    // enciphered message. MAC 0 is also the first counter.
    begin_mac(0);
    m_cmac.update(nonce, nonce_size);
    m_cmac.final(m_tag);
    m_ctr.set_iv(m_tag, sizeof m_tag);

    begin_mac(1);
    m_cmac.update(reinterpret_cast<unsigned char const *>(header.data()), headerSize);
    unsigned char headerMac[tag_size];
    m_cmac.final(headerMac);
    impl::xor_block(m_tag, headerMac);

    // Remains open: the caller adds the message, and `finish` closes it.
    begin_mac(2);
    cleanse(headerMac, sizeof headerMac);
}

EaxAesContext::~EaxAesContext() {
    cleanse(m_tag, sizeof m_tag);
}

void EaxAesContext::finish() noexcept {
    unsigned char messageMac[tag_size];
    m_cmac.final(messageMac);
    impl::xor_block(m_tag, messageMac);
    cleanse(messageMac, sizeof messageMac);
}

bool EaxAesContext::tag_matches(unsigned char const * expected) const noexcept {
    return constant_time_equal(m_tag, expected, sizeof m_tag);
}

/// Starts one of the three MACs of a message. Its first block is its number, big-endian.
void EaxAesContext::begin_mac(unsigned char number) noexcept {
    unsigned char block[AesEncryptContext::block_size] = {};
    block[sizeof block - 1] = number;
    m_cmac.reset();
    m_cmac.update(block, sizeof block);
}

} // namespace vxcrypto
