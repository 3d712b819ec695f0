#pragma once

#include "vxcrypto/aes_cmac_context.h"
#include "vxcrypto/aes_ctr_context.h"
#include "vxcrypto/key.h"

#include <string_view>

namespace vxcrypto {

/// Authenticated encryption of one message: EAX (Bellare, Rogaway and Wagner, 2004) over AES, with
/// a nonce and a tag of 16 bytes each.
///
/// The caller drives both halves, in pieces of any size and in the order of the message. The MAC
/// always runs over the ciphertext:
///
///     EaxAesContext eax(key, nonce, header);      // sealing
///     eax.ctr().process(piece, size);             // plaintext to ciphertext, for each piece
///     eax.cmac().update(piece, size);
///     eax.finish();                               // eax.tag() goes with the message
///
///     EaxAesContext eax(key, nonce, header);      // opening
///     eax.cmac().update(piece, size);             // first all of the ciphertext
///     eax.finish();
///     if (eax.tag_matches(tag)) {
///         eax.ctr().process(piece, size);         // only then ciphertext to plaintext
///     }
///
/// A nonce must never come twice under one key. What was deciphered before the tag has matched is
/// anybody's text. An object serves one message and is neither copied nor moved.
///
/// Cost. Two heap blocks, which hold the key schedule and the subkeys; about seven AES blocks
/// beside the header and the message.
///
/// Threads. One object belongs to one thread at a time.
class VXCRYPTO_API EaxAesContext {
  public:
    /// Bytes.
    static constexpr unsigned int nonce_size = AesEncryptContext::block_size;
    static constexpr unsigned int tag_size = AesEncryptContext::block_size;

    /// @param key     16, 24 or 32 bytes; it is not kept.
    /// @param nonce   `nonce_size` bytes.
    /// @param header  Authenticated with the message and not part of it; may be empty.
    /// @raises error.vxcrypto.key.size: another size of key.
    /// @raises std::length_error: `header` has more than 2^32 - 1 bytes.
    EaxAesContext(Key const & key, unsigned char const * nonce, std::string_view header);
    EaxAesContext(EaxAesContext const &) = delete;
    EaxAesContext & operator=(EaxAesContext const &) = delete;

    /// Wipes the tag, the key stream and its counter, the running MAC, then the subkeys and the key
    /// schedule, in this order.
    ~EaxAesContext();

    AesCmacContext & cmac() noexcept { return m_cmac; }

    AesCtrContext & ctr() noexcept { return m_ctr; }

    /// Ends the MAC; `tag()` is the message's then. To be called once, behind all ciphertext.
    void finish() noexcept;

    /// `tag_size` bytes. Good after `finish()`.
    unsigned char const * tag() const noexcept { return m_tag; }

    /// True when `expected` (`tag_size` bytes) is the message's tag. The time it takes does not
    /// tell where they differ. Good after `finish()`.
    [[nodiscard]] bool tag_matches(unsigned char const * expected) const noexcept;

  private:
    void begin_mac(unsigned char number) noexcept;

    // The order matters: members are wiped from the last to the first.
    AesCmacContext m_cmac;
    AesCtrContext m_ctr;
    unsigned char m_tag[tag_size];
};

} // namespace vxcrypto
