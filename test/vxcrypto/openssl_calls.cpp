#include "openssl_calls.h"

#include <openssl/err.h>

#include <cstdlib>
#include <dlfcn.h>
#include <utility>

vxtest::OpensslCalls & vxtest::openssl_calls() noexcept {
    thread_local OpensslCalls calls;
    return calls;
}

namespace {

/// Returns OpenSSL's own function of that name.
template <typename Function>
Function * original(Function *, char const * name) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

void AES_encrypt(unsigned char const * in, unsigned char * out, void const * key) {
    static auto * const next = original(&AES_encrypt, "AES_encrypt");
    ++vxtest::openssl_calls().encrypted;
    next(in, out, key);
}

int AES_set_encrypt_key(unsigned char const * key, int bits, void * schedule) {
    static auto * const next = original(&AES_set_encrypt_key, "AES_set_encrypt_key");
    static bool fails = std::getenv("VX_FIRST_SCHEDULE_FAILS") != nullptr;
    bool const isFailure = std::exchange(fails, false);
    int const result = next(key, bits, schedule);
    return isFailure ? -1 : result;
}

void OPENSSL_cleanse(void * data, std::size_t size) {
    static auto * const next = original(&OPENSSL_cleanse, "OPENSSL_cleanse");
    vxtest::OpensslCalls & calls = vxtest::openssl_calls();
    if (calls.wipes < 16) {
        calls.wiped[calls.wipes] = {data, size};
    }
    ++calls.wipes;
    next(data, size);
}

void RAND_add(void const * data, int size, double credit) {
    static auto * const next = original(&RAND_add, "RAND_add");
    vxtest::openssl_calls().added += size == 8 && credit == 0 ? 1 : 0;
    if (vxtest::openssl_calls().refuse) {
        ERR_raise(ERR_LIB_RAND, ERR_R_INTERNAL_ERROR);
    }
    next(data, size, credit);
}

int RAND_bytes(unsigned char * data, int size) {
    static auto * const next = original(&RAND_bytes, "RAND_bytes");
    ++vxtest::openssl_calls().requested;
    if (vxtest::openssl_calls().refuse) {
        ERR_raise(ERR_LIB_RAND, ERR_R_INTERNAL_ERROR);
        return 0;
    }
    return next(data, size);
}
}
