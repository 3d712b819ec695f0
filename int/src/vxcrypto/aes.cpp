// OpenSSL deprecates its calls for single AES blocks in favour of generic ones. Those cannot run a
// CBC chain without returning each block, and cannot share one key schedule between modes.
#define OPENSSL_SUPPRESS_DEPRECATED

#include "vxcrypto/aes.h"

#include "vxcore/error_exception.h"
#include "vxcrypto/aes_block_internal.h"
#include "vxcrypto/aes_schedule_internal.h"
#include "vxcrypto/cleanse.h"
#include "vxcrypto/error_codes_internal.h"

#include <cstring>

namespace vxcrypto {

namespace {

constexpr unsigned int blockSize = AesEncryptContext::block_size;

AES_KEY const * schedule_of(impl::CleansedBlock const & block) noexcept {
    return static_cast<AES_KEY const *>(block.data());
}

void portable_chain(AES_KEY const * schedule, unsigned char * x, unsigned char const * data,
                    unsigned int blocks) noexcept {
    for (; blocks != 0; --blocks, data += blockSize) {
        AES_encrypt(x, x, schedule);
        impl::xor_block(x, data);
    }
}

void portable_xor_key_stream(AES_KEY const * schedule, unsigned char * counter,
                             unsigned char * data, unsigned int blocks) noexcept {
    unsigned char keyStream[blockSize];
    for (; blocks != 0; --blocks, data += blockSize) {
        AES_encrypt(counter, keyStream, schedule);
        impl::increment_counter(counter);
        impl::xor_block(data, keyStream);
    }
    cleanse(keyStream, sizeof keyStream);
}

/// One implementation of AesEncryptContext::chain and AesEncryptContext::xor_key_stream.
struct BlockFunctions {
    void (*chain)(AES_KEY const *, unsigned char *, unsigned char const *, unsigned int) noexcept;
    void (*xor_key_stream)(AES_KEY const *, unsigned char *, unsigned char *,
                           unsigned int) noexcept;
};

constexpr BlockFunctions portable = {&portable_chain, &portable_xor_key_stream};

/// The functions in use: portable until load-time code has run, since they may be called earlier.
constinit BlockFunctions blockFunctions = portable;

#if defined(VX_AES_BULK) && defined(__x86_64__)

constexpr BlockFunctions aesni = {
    [](AES_KEY const * schedule, unsigned char * x, unsigned char const * data,
       unsigned int blocks) noexcept {
        impl::aesni_chain(impl::aesni_keys(*schedule), x, data, blocks);
    },
    [](AES_KEY const * schedule, unsigned char * counter, unsigned char * data,
       unsigned int blocks) noexcept {
        impl::aesni_xor_key_stream(impl::aesni_keys(*schedule), counter, data, data, blocks);
    }};

/// The results of one set of functions for public data.
struct Trial {
    static constexpr unsigned int blocks = 9; // one iteration of the eight-block loop, and a rest

    unsigned char state[blockSize];
    unsigned char counter[blockSize];
    unsigned char data[blocks * blockSize];
};

Trial run_trial(BlockFunctions const & tried, AES_KEY const * schedule) noexcept {
    Trial trial = {};
    // The counter carries through all its bytes within the first eight blocks.
    std::memset(trial.counter, 0xFF, blockSize);
    trial.counter[blockSize - 1] = 0xFC;
    tried.xor_key_stream(schedule, trial.counter, trial.data, Trial::blocks);
    tried.chain(schedule, trial.state, trial.data, Trial::blocks);
    return trial;
}

/// True when both sets of functions have the same results under a key of each size. OpenSSL does
/// not specify the layout of a key schedule: its builds without assembler keep the bytes of each
/// word in the opposite order. Costs 54 calls of `AES_encrypt`, about 7 microseconds.
bool aesni_agrees() noexcept {
    unsigned char const key[32] = {1, 2, 3, 4};
    for (int const bits : {128, 192, 256}) {
        AES_KEY schedule;
        if (AES_set_encrypt_key(key, bits, &schedule) != 0 || schedule.rounds != bits / 32 + 6) {
            return false;
        }
        Trial const expected = run_trial(portable, &schedule);
        Trial const actual = run_trial(aesni, &schedule);
        if (std::memcmp(&expected, &actual, sizeof expected) != 0) {
            return false;
        }
    }
    return true;
}

/// Switches to the AES-NI functions at load, if they work here.
bool const usesAesni = [] {
    bool const agrees = impl::has_aes_instructions() && aesni_agrees();
    if (agrees) {
        blockFunctions = aesni;
    }
    return agrees;
}();

#endif

} // namespace

namespace impl {

#if defined(VX_AES_BULK) && defined(__x86_64__)
bool uses_aesni() noexcept {
    return usesAesni;
}
#endif

void check_key(unsigned char const * key, unsigned int size) {
    if (key == nullptr || (size != 16 && size != 24 && size != 32)) {
        vxcore::throw_error(
            error::vxcrypto_key_size,
            vxcore::SourceString("Key for AES must be 128, 192, or 256 bits (16, 24, or 32 bytes)",
                                 true),
            VXCORE_LOCATION("vxcrypto::AesEncryptContext::rekey()"));
    }
}

} // namespace impl

void AesEncryptContext::rekey(unsigned char const * key, unsigned int size) {
    impl::check_key(key, size);
    m_schedule.allocate(sizeof(AES_KEY));
    AES_set_encrypt_key(key, static_cast<int>(size * 8), static_cast<AES_KEY *>(m_schedule.data()));
}

void AesEncryptContext::encrypt(unsigned char const * in, unsigned char * out) const noexcept {
    AES_encrypt(in, out, schedule_of(m_schedule));
}

void AesEncryptContext::chain(unsigned char * x, unsigned char const * data,
                              unsigned int blocks) const noexcept {
    blockFunctions.chain(schedule_of(m_schedule), x, data, blocks);
}

void AesEncryptContext::xor_key_stream(unsigned char * counter, unsigned char * data,
                                       unsigned int blocks) const noexcept {
    blockFunctions.xor_key_stream(schedule_of(m_schedule), counter, data, blocks);
}

} // namespace vxcrypto
