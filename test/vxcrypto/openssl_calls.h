#pragma once

#include <cstddef>

/// Intercepts calls from the library to OpenSSL: counts them and passes them on.
namespace vxtest {

struct Wiped {
    void const * data;
    std::size_t size;
};

/// The calls of one thread since it was last set to {}.
struct OpensslCalls {
    unsigned long encrypted = 0; ///< calls of AES_encrypt
    unsigned long added = 0;     ///< calls of RAND_add with 8 bytes and no credit claimed
    unsigned long requested = 0; ///< calls of RAND_bytes
    bool refuse = false;         ///< makes RAND_bytes fail, with a reason
    unsigned int wipes = 0;      ///< calls of OPENSSL_cleanse
    Wiped wiped[16] = {};        ///< the first 16 of them
};

OpensslCalls & openssl_calls() noexcept;

} // namespace vxtest
