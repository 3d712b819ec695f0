#pragma once

#include "vxattribute/secured_value.h"

namespace vxattribute::impl {

/// AES-EAX. Sealed bytes are a nonce of 16 bytes, as many bytes as the plaintext has, and a tag of
/// 16 bytes; the annotation is the header.
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
    /// @param plaintext  Receives the opened list; null checks only, and then false tells a tag
    ///                   that differs.
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

/// Hands through what it is given. It takes an empty key only: whoever has a real key and meets
/// bytes of strangers under this name gets an error.
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

/// The three above.
class DefaultCipherProvider final : public SecuredValue::ICipherProvider {
  public:
    SecuredValue::CipherPtr find_cipher(std::string const & cipherId) const override;
};

/// Those that check a key.
class StrictCipherProvider final : public SecuredValue::ICipherProvider {
  public:
    SecuredValue::CipherPtr find_cipher(std::string const & cipherId) const override;
};

// They stand in statics.cpp, at their place in the order of the library's statics.
extern SecuredValueCipherEaxAes128 const cipherEaxAes128;
extern SecuredValueCipherEaxAes256 const cipherEaxAes256;
extern SecuredValueCipherNull const cipherNull;
extern DefaultCipherProvider const defaultCipherProvider;
extern StrictCipherProvider const strictCipherProvider;

} // namespace vxattribute::impl
