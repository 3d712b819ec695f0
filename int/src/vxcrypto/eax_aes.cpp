#define OPENSSL_SUPPRESS_DEPRECATED // see aes.cpp

#include "vxcrypto/eax_aes.h"

#include "vxcore/text_size.h"
#include "vxcrypto/aes_schedule_internal.h"
#include "vxcrypto/cleanse.h"
#include "vxcrypto/constant_time.h"
#include "vxcrypto/eax_aes_context.h"

#include <algorithm>
#include <cstring>

namespace vxcrypto {

namespace {

/// The functions where there are no AES instructions: the contexts, fed with one piece.
struct Portable {
    static void seal(Key const & key, impl::EaxPrefix const & prefix, unsigned char * message,
                     unsigned int size, unsigned char * tag) {
        EaxAesContext eax(key, prefix.nonce, prefix.header);
        eax.ctr().process(message, size);
        eax.cmac().update(message, size);
        eax.finish();
        std::memcpy(tag, eax.tag(), EaxAesContext::tag_size);
    }

    /// @param opened  Receives the deciphered message; null to check only.
    static bool open(Key const & key, impl::EaxPrefix const & prefix, unsigned char const * message,
                     unsigned int size, unsigned char const * tag, unsigned char * opened) {
        EaxAesContext eax(key, prefix.nonce, prefix.header);
        eax.cmac().update(message, size);
        eax.finish();
        bool const matches = eax.tag_matches(tag);
        if (matches && opened != nullptr) {
            if (opened != message) {
                std::copy_n(message, size, opened);
            }
            eax.ctr().process(opened, size);
        }
        return matches;
    }
};

#if defined(VX_AES_BULK) && defined(__x86_64__)

/// The functions on AES instructions. An object has all that is secret about one message, so that
/// it is wiped at once.
class Aesni {
  public:
    static void seal(Key const & key, impl::EaxPrefix const & prefix, unsigned char * message,
                     unsigned int size, unsigned char * tag) {
        Aesni const aesni(key);
        impl::aesni_eax_seal(impl::aesni_keys(aesni.m_schedule), prefix, message, size, tag);
    }

    static bool open(Key const & key, impl::EaxPrefix const & prefix, unsigned char const * message,
                     unsigned int size, unsigned char const * tag, unsigned char * opened) {
        Aesni aesni(key);
        impl::aesni_eax_tag(impl::aesni_keys(aesni.m_schedule), prefix, message, size, aesni.m_tag,
                            aesni.m_counter);
        bool const matches = constant_time_equal(aesni.m_tag, tag, sizeof aesni.m_tag);
        if (matches && opened != nullptr) {
            aesni.decipher(message, size, opened);
        }
        return matches;
    }

  private:
    static constexpr unsigned int blockSize = AesEncryptContext::block_size;

    explicit Aesni(Key const & key) {
        impl::check_key(key.data(), key.size());
        AES_set_encrypt_key(key.data(), static_cast<int>(key.size() * 8), &m_schedule);
    }

    ~Aesni() { cleanse(this, sizeof *this); }

    void decipher(unsigned char const * message, unsigned int size,
                  unsigned char * opened) noexcept {
        impl::AesniKeys const keys = impl::aesni_keys(m_schedule);
        unsigned int const rest = size % blockSize;
        impl::aesni_xor_key_stream(keys, m_counter, message, opened, size / blockSize);
        if (rest != 0) {
            std::memcpy(m_rest, message + size - rest, rest);
            impl::aesni_xor_key_stream(keys, m_counter, m_rest, m_rest, 1);
            std::memcpy(opened + size - rest, m_rest, rest);
        }
    }

    AES_KEY m_schedule;
    unsigned char m_tag[blockSize];
    unsigned char m_counter[blockSize];
    unsigned char m_rest[blockSize] = {}; // the last block, when it is not whole
};

#endif

impl::EaxPrefix prefix_of(unsigned char const * nonce, std::string_view header) {
    vxcore::text_size(header.size()); // for its check only
    return {nonce, header};
}

bool check_and_open(Key const & key, impl::EaxPrefix const & prefix, unsigned char const * message,
                    unsigned int size, unsigned char const * tag, unsigned char * opened) {
#if defined(VX_AES_BULK) && defined(__x86_64__)
    if (impl::uses_aesni()) {
        return Aesni::open(key, prefix, message, size, tag, opened);
    }
#endif
    return Portable::open(key, prefix, message, size, tag, opened);
}

} // namespace

void eax_aes_seal(Key const & key, unsigned char const * nonce, std::string_view header,
                  unsigned char * message, unsigned int size, unsigned char * tag) {
    impl::EaxPrefix const prefix = prefix_of(nonce, header);
#if defined(VX_AES_BULK) && defined(__x86_64__)
    if (impl::uses_aesni()) {
        return Aesni::seal(key, prefix, message, size, tag);
    }
#endif
    Portable::seal(key, prefix, message, size, tag);
}

bool eax_aes_verify(Key const & key, unsigned char const * nonce, std::string_view header,
                    unsigned char const * message, unsigned int size, unsigned char const * tag) {
    return check_and_open(key, prefix_of(nonce, header), message, size, tag, nullptr);
}

bool eax_aes_open(Key const & key, unsigned char const * nonce, std::string_view header,
                  unsigned char const * message, unsigned int size, unsigned char const * tag,
                  unsigned char * opened) {
    return check_and_open(key, prefix_of(nonce, header), message, size, tag, opened);
}

} // namespace vxcrypto
