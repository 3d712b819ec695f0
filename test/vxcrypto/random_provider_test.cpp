#include "openssl_calls.h"
#include "support/expect_error.h"

#include "vxcrypto/random_provider.h"

#include <openssl/err.h>

#include <cstring>

namespace {

using namespace vxtest;

void expect_failure(void * buffer, unsigned int size, char const * code, char const * text) {
    auto const info =
        expect_error([&] { vxcrypto::default_random_provider()->generate_random(buffer, size); },
                     vxcore::ErrorCode(code, true), text);
    EXPECT_EQ(info->location().function().view(),
              "vxcrypto::impl::DefaultRandomProviderImpl::generate_random()");
}

TEST(RandomProvider, MixesTheTimeInBeforeItLooksAtTheArguments) {
    openssl_calls() = {};
    auto const provider = vxcrypto::default_random_provider();
    provider->generate_random(nullptr, 0x80000000u);
    provider->generate_random(nullptr, 16);
    char buffer[48] = {};
    char const untouched[48] = {};
    for (unsigned int const size : {0x80000000u, 0xFFFFFFFFu}) {
        expect_failure(buffer, size, "error.vxcrypto.randomProvider.arguments",
                       "Invalid 'size' argument");
    }
    EXPECT_EQ(openssl_calls().requested, 0u);
    provider->generate_random(buffer, 0);
    EXPECT_EQ(openssl_calls().requested, 1u);
    EXPECT_EQ(std::memcmp(buffer, untouched, 48), 0);
    provider->generate_random(buffer, 16);
    provider->generate_random(buffer + 16, 16);
    EXPECT_NE(std::memcmp(buffer, buffer + 16, 16), 0);
    EXPECT_EQ(std::memcmp(buffer + 32, untouched, 16), 0);
    openssl_calls().refuse = true;
    ERR_raise(ERR_LIB_USER, 7); // of the caller's own: it stays in the queue, and nothing else does
    expect_failure(buffer, 16, "error.vxcrypto.randomProvider.failed",
                   "Random provider failed to generate requested number of bytes");
    EXPECT_EQ(ERR_GET_REASON(ERR_get_error()), 7);
    EXPECT_EQ(ERR_get_error(), 0u);
    EXPECT_EQ(openssl_calls().added, 8u);
    openssl_calls() = {};
}

} // namespace
