#pragma once

#include <cstddef>

/// Stands between the library and OpenSSL: the calls noted here come through the test program and
/// go on from there.
namespace vxtest {

struct Wiped {
    void const * data;
    std::size_t size;
};

/// What one thread called since it was last set to {}.
struct OpensslCalls {
    unsigned long encrypted = 0; ///< calls of AES_encrypt
    unsigned long added = 0;     ///< calls of RAND_add with 8 bytes and no credit claimed
    unsigned long requested = 0; ///< calls of RAND_bytes
    bool refuse = false;         ///< lets RAND_bytes fail, and note why
    unsigned int wipes = 0;      ///< calls of OPENSSL_cleanse
    Wiped wiped[16] = {};        ///< the first of them
};

OpensslCalls & openssl_calls() noexcept;

} // namespace vxtest
