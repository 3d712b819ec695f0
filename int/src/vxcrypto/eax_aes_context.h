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
/// Never use a nonce twice under one key. Do not trust text deciphered before the tag has matched:
/// anybody may have written it. An object serves one message; it can be neither copied nor moved.
///
/// Cost. Two heap blocks, which hold the key schedule and the subkeys. About seven AES blocks in
/// addition to the header, and two for each block of the message.
///
/// Threads. One object belongs to one thread at a time.
class VXCRYPTO_API EaxAesContext {
  public:
    /// In bytes.
    static constexpr unsigned int nonce_size = AesEncryptContext::block_size;
    static constexpr unsigned int tag_size = AesEncryptContext::block_size;

    /// Starts a message.
    ///
    /// @param key     16, 24 or 32 bytes. No reference to it is kept.
    /// @param nonce   `nonce_size` bytes.
    /// @param header  Authenticated with the message but not part of it; may be empty.
    /// @raises error.vxcrypto.key.size: the key has another size.
    /// @raises std::length_error: `header` has more than 2^32 - 1 bytes.
    EaxAesContext(Key const & key, unsigned char const * nonce, std::string_view header);
    EaxAesContext(EaxAesContext const &) = delete;
    EaxAesContext & operator=(EaxAesContext const &) = delete;

    /// Wipes the tag, the key stream and its counter, the running MAC, then the subkeys and the key
    /// schedule, in this order.
    ~EaxAesContext();

    /// The MAC, to be fed with the ciphertext.
    AesCmacContext & cmac() noexcept { return m_cmac; }

    /// The key stream, to encipher or decipher pieces in place.
    AesCtrContext & ctr() noexcept { return m_ctr; }

    /// Completes the tag. Call it once, after all ciphertext.
    void finish() noexcept;

    /// The tag of the message, `tag_size` bytes. Valid after `finish()`.
    unsigned char const * tag() const noexcept { return m_tag; }

    /// True when `expected` (`tag_size` bytes) equals the tag. The time it takes does not reveal
    /// where they differ. Valid after `finish()`.
    [[nodiscard]] bool tag_matches(unsigned char const * expected) const noexcept;

  private:
    void begin_mac(unsigned char number) noexcept;

    // The order matters: members are wiped in reverse order.
    AesCmacContext m_cmac;
    AesCtrContext m_ctr;
    unsigned char m_tag[tag_size];
};

} // namespace vxcrypto
