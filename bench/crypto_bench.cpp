// Seals a message in place, checks it, and opens it into another buffer: our EAX beside EAX and GCM
// of other libraries. Each sets its key up anew for each message.

// For AES_encrypt and AES_set_encrypt_key. Without AES-NI functions our own EAX uses them too.
#define OPENSSL_SUPPRESS_DEPRECATED

#include "measure.h"

#include "vxcrypto/eax_aes.h"

#include <openssl/aes.h>
#include <openssl/evp.h>

#include <cstring>
#include <vector>

#ifdef VX_BENCH_CRYPTOPP
#include <cryptopp/aes.h>
#include <cryptopp/eax.h>
#endif

namespace vxbench {

namespace {

using Bytes = std::vector<unsigned char>;

constexpr unsigned char key[16] = {0x2b, 0x7e, 0x15, 0x16};
constexpr unsigned char nonce[16] = {0x62, 0xec, 0x67, 0xf9};
constexpr char header[] = "an annotation";
constexpr unsigned int headerSize = sizeof header - 1;
constexpr unsigned int tagSize = 16;

/// The buffers of one peer, which seals in place in `sealed` and opens from there into `opened`.
struct Buffers {
    explicit Buffers(unsigned int messageSize)
        : size(messageSize), memory(2 * std::size_t(size) + gap), sealed(memory.data()),
          opened(sealed + size + gap) {
        for (unsigned int i = 0; i < size; ++i) {
            sealed[i] = byte(i);
        }
    }

    static unsigned char byte(unsigned int i) { return static_cast<unsigned char>(i * 7); }

    bool is_opened() const {
        unsigned int i = 0;
        while (i < size && opened[i] == byte(i)) {
            ++i;
        }
        return i == size;
    }

    /// The bytes between the two. Copying takes twenty times as long when the target lies a few
    /// bytes past a multiple of 4096 from the source, as it does when one vector follows the other.
    static constexpr unsigned int gap = 256;

    unsigned int size;
    Bytes memory;
    unsigned char * sealed;
    unsigned char * opened;
    unsigned char tag[tagSize] = {};
};

struct Ours {
    static void seal(Buffers & b) {
        vxcrypto::eax_aes_seal(m_key, nonce, {header, headerSize}, b.sealed, b.size, b.tag);
    }

    static bool verify(Buffers & b) {
        return vxcrypto::eax_aes_verify(m_key, nonce, {header, headerSize}, b.sealed, b.size,
                                        b.tag);
    }

    static bool open(Buffers & b) {
        return vxcrypto::eax_aes_open(m_key, nonce, {header, headerSize}, b.sealed, b.size, b.tag,
                                      b.opened);
    }

  private:
    static inline vxcrypto::Key const m_key{key, sizeof key};
};

/// Does only the block work of sealing: two calls of AES_encrypt for each block of a message.
struct BlockByBlock {
    static void seal(Buffers & b) {
        AES_KEY schedule;
        AES_set_encrypt_key(key, 128, &schedule);
        unsigned char counter[16] = {};
        unsigned char stream[16];
        for (unsigned int at = 0; at + 16 <= b.size; at += 16) {
            AES_encrypt(counter, stream, &schedule);
            ++counter[15];
            for (unsigned int i = 0; i < 16; ++i) {
                b.sealed[at + i] ^= stream[i];
                b.tag[i] ^= b.sealed[at + i];
            }
            AES_encrypt(b.tag, b.tag, &schedule);
        }
    }
};

#ifdef VX_BENCH_CRYPTOPP
struct CryptoppEax {
    static void seal(Buffers & b) {
        CryptoPP::EAX<CryptoPP::AES>::Encryption eax;
        start(eax);
        eax.ProcessData(b.sealed, b.sealed, b.size);
        eax.TruncatedFinal(b.tag, tagSize);
    }

    /// Checks too: this library cannot do so without deciphering.
    static bool open(Buffers & b) {
        CryptoPP::EAX<CryptoPP::AES>::Decryption eax;
        start(eax);
        eax.ProcessData(b.opened, b.sealed, b.size);
        return eax.TruncatedVerify(b.tag, tagSize);
    }

    static bool verify(Buffers & b) { return open(b); }

  private:
    static void start(CryptoPP::AuthenticatedSymmetricCipher & eax) {
        eax.SetKeyWithIV(key, sizeof key, nonce, sizeof nonce);
        eax.Update(reinterpret_cast<unsigned char const *>(header), headerSize);
    }
};
#endif

/// Uses OpenSSL's generic interface, with one context for all messages.
class OpensslGcm {
  public:
    static void seal(Buffers & b) {
        start(1);
        int size = 0;
        EVP_CipherUpdate(m_context, b.sealed, &size, b.sealed, int(b.size));
        EVP_CipherFinal_ex(m_context, b.sealed + size, &size);
        EVP_CIPHER_CTX_ctrl(m_context, EVP_CTRL_AEAD_GET_TAG, tagSize, b.tag);
    }

    /// Checks too: this library cannot do so without deciphering.
    static bool open(Buffers & b) {
        start(0);
        int size = 0;
        EVP_CipherUpdate(m_context, b.opened, &size, b.sealed, int(b.size));
        EVP_CIPHER_CTX_ctrl(m_context, EVP_CTRL_AEAD_SET_TAG, tagSize, b.tag);
        return EVP_CipherFinal_ex(m_context, b.opened + size, &size) == 1;
    }

    static bool verify(Buffers & b) { return open(b); }

  private:
    static void start(int enciphers) {
        int size = 0;
        EVP_CipherInit_ex(m_context, EVP_aes_128_gcm(), nullptr, nullptr, nullptr, enciphers);
        EVP_CIPHER_CTX_ctrl(m_context, EVP_CTRL_AEAD_SET_IVLEN, sizeof nonce, nullptr);
        EVP_CipherInit_ex(m_context, nullptr, nullptr, key, nonce, enciphers);
        EVP_CipherUpdate(m_context, nullptr, &size, reinterpret_cast<unsigned char const *>(header),
                         headerSize);
    }

    static inline EVP_CIPHER_CTX * const m_context = EVP_CIPHER_CTX_new();
};

struct Size {
    char const * name;
    unsigned int bytes;
};

constexpr Size sizes[] = {{"16_B", 16},
                          {"64_B", 64},
                          {"1_KiB", 1024},
                          {"64_KiB", 64 * 1024},
                          {"16_MiB", 16 * 1024 * 1024}};

template <typename Peer>
void add_seal(char const * peer, Size size) {
    add(std::string("seal_") + size.name, peer, [size](benchmark::State & state) {
        Buffers buffers(size.bytes);
        state.counters["bytes"] = size.bytes;
        measure(state, 1, [&] {
            Peer::seal(buffers);
            benchmark::DoNotOptimize(buffers.tag);
        });
    });
}

template <typename Peer>
void add_peer(char const * peer, Size size) {
    add_seal<Peer>(peer, size);
    using Run = bool (*)(Buffers &);
    for (auto const & [work, run] :
         {std::pair<char const *, Run>("verify_", &Peer::verify), {"open_", &Peer::open}}) {
        add(std::string(work) + size.name, peer, [size, run = run](benchmark::State & state) {
            Buffers buffers(size.bytes);
            Peer::seal(buffers);
            state.counters["bytes"] = size.bytes;
            if (!Peer::open(buffers) || !buffers.is_opened()) {
                state.SkipWithError("what was opened differs");
            }
            measure(state, 1, [&] {
                bool matches = run(buffers);
                benchmark::DoNotOptimize(matches);
            });
        });
    }
}

} // namespace

void add_crypto_benchmarks() {
    for (Size const & size : sizes) {
        add_peer<Ours>("vxattribute", size);
        add_seal<BlockByBlock>("aes_encrypt", size);
#ifdef VX_BENCH_CRYPTOPP
        add_peer<CryptoppEax>("cryptopp_eax", size);
#endif
        add_peer<OpensslGcm>("openssl_gcm", size);
    }
}

} // namespace vxbench
