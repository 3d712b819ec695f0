#pragma once

#include "vxattribute/secured_value.h"

namespace vxattribute::impl {

/// AES-EAX. The sealed bytes are, in this order:
///
/// 1. the nonce, 16 bytes;
/// 2. the enciphered plaintext, of the same size;
/// 3. the tag over nonce, annotation and enciphered bytes, 16 bytes.
class SecuredValueCipherEaxAesBase : public SecuredValue::ICipher {
  public:
    std::string const & cipher_id() const final { return m_id; }

    SecuredValue::Ciphertext encrypt(SecuredValue::Ciphertext const & plaintext,
                                     std::string const & annotation, vxcrypto::Key const & key,
                                     vxcrypto::IRandomProvider & random) const final;
    SecuredValue::Ciphertext decrypt(vxcrypto::Key const & key, std::string const & annotation,
                                     SecuredValue::Ciphertext const & ciphertext) const final;
    bool authenticate(vxcrypto::Key const & key, std::string const & annotation,
                      SecuredValue::Ciphertext const & ciphertext) const final;

  protected:
    explicit SecuredValueCipherEaxAesBase(char const * id) : m_id(id) {}

    ~SecuredValueCipherEaxAesBase() = default;

  private:
    /// Checks the tag, and deciphers only when it matches.
    ///
    /// @param plaintext  Receives the opened list. Null means to check only; then the result is
    ///                   false for a tag that differs. Otherwise such a tag raises.
    bool authenticate_decrypt(vxcrypto::Key const & key, std::string const & annotation,
                              SecuredValue::Ciphertext const & ciphertext,
                              SecuredValue::Ciphertext * plaintext) const;

    std::string const m_id;
};

class SecuredValueCipherEaxAes128 final : public SecuredValueCipherEaxAesBase {
  public:
    SecuredValueCipherEaxAes128() : SecuredValueCipherEaxAesBase("EAX_AES128") {}

    unsigned int keysize() const override { return 16; }
};

class SecuredValueCipherEaxAes256 final : public SecuredValueCipherEaxAesBase {
  public:
    SecuredValueCipherEaxAes256() : SecuredValueCipherEaxAesBase("EAX_AES256") {}

    unsigned int keysize() const override { return 32; }
};

/// Returns its input unchanged. It accepts an empty key only, so a caller with a real key gets an
/// error for forged bytes that name this cipher.
class SecuredValueCipherNull final : public SecuredValue::ICipher {
  public:
    std::string const & cipher_id() const override { return m_id; }

    unsigned int keysize() const override { return 0; }

    SecuredValue::Ciphertext encrypt(SecuredValue::Ciphertext const & plaintext,
                                     std::string const & annotation, vxcrypto::Key const & key,
                                     vxcrypto::IRandomProvider & random) const override;
    SecuredValue::Ciphertext decrypt(vxcrypto::Key const & key, std::string const & annotation,
                                     SecuredValue::Ciphertext const & ciphertext) const override;
    bool authenticate(vxcrypto::Key const & key, std::string const & annotation,
                      SecuredValue::Ciphertext const & ciphertext) const override;

  private:
    void check_keysize(vxcrypto::Key const & key) const;

    std::string const m_id = "NULL";
};

/// The EAX cipher that takes keys of this size.
///
/// @raises error.vxattribute.value.secured.keysize: there is none.
SecuredValue::ICipher const & cipher_for(vxcrypto::Key const & key);

/// Finds the three ciphers above.
class DefaultCipherProvider final : public SecuredValue::ICipherProvider {
  public:
    SecuredValue::CipherPtr find_cipher(std::string const & cipherId) const override;
};

/// Finds only the two EAX ciphers, which require a key.
class StrictCipherProvider final : public SecuredValue::ICipherProvider {
  public:
    SecuredValue::CipherPtr find_cipher(std::string const & cipherId) const override;
};

// Defined in module/statics.cpp, at their place in the order of the library's statics.
extern SecuredValueCipherEaxAes128 const cipherEaxAes128;
extern SecuredValueCipherEaxAes256 const cipherEaxAes256;
extern SecuredValueCipherNull const cipherNull;
extern DefaultCipherProvider const defaultCipherProvider;
extern StrictCipherProvider const strictCipherProvider;

} // namespace vxattribute::impl
