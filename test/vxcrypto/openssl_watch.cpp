#include "openssl_watch.h"

#include <dlfcn.h>

namespace {

thread_local vxtest::OpensslCalls * calls = nullptr;

/// The function of that name that would be called without this program's own.
template <typename Function>
Function * next(Function *, char const * name) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

} // namespace

namespace vxtest {

OpensslWatch::OpensslWatch() {
    calls.wiped.reserve(100); // no allocation while watching
    ::calls = &calls;
}

OpensslWatch::~OpensslWatch() {
    ::calls = nullptr;
}

} // namespace vxtest

extern "C" {

void AES_encrypt(unsigned char const * in, unsigned char * out, void const * key) {
    static auto * const original = next(&AES_encrypt, "AES_encrypt");
    if (calls != nullptr) {
        ++calls->encrypted;
    }
    original(in, out, key);
}

void OPENSSL_cleanse(void * data, std::size_t size) {
    static auto * const original = next(&OPENSSL_cleanse, "OPENSSL_cleanse");
    if (calls != nullptr) {
        calls->wiped.push_back({data, size});
    }
    original(data, size);
}

void RAND_add(void const * data, int size, double credit) {
    static auto * const original = next(&RAND_add, "RAND_add");
    if (calls != nullptr) {
        calls->added += size == 8 ? 1 : 0;
        calls->credit += credit;
    }
    original(data, size, credit);
}

int RAND_bytes(unsigned char * data, int size) {
    static auto * const original = next(&RAND_bytes, "RAND_bytes");
    if (calls != nullptr) {
        ++calls->requested;
        if (calls->refuse) {
            return 0;
        }
    }
    return original(data, size);
}
}
