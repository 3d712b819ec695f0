#include "openssl_calls.h"
#include "support/expect_error.h"

#include "vxcrypto/random_provider.h"

#include <openssl/crypto.h>
#include <openssl/err.h>

#include <cstdlib>
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

// OpenSSL cannot start without memory, and shuts down before the last destructors run.
TEST(RandomProvider, RaisesWhereOpenSslIsNotRunning) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // each in a process that has not used it
    auto const fail_after = [](auto stop) {
        stop();
        vxcrypto::default_random_provider()->generate_random(nullptr, 16);
        char buffer[16];
        expect_failure(buffer, 16, "error.vxcrypto.randomProvider.failed",
                       "Random provider failed to generate requested number of bytes");
        std::_Exit(HasFailure() ? 1 : 0);
    };
    auto const withhold_memory = [] {
        CRYPTO_set_mem_functions([](std::size_t, char const *, int) -> void * { return nullptr; },
                                 nullptr, nullptr);
    };
    auto const end = [] {
        vxcrypto::default_random_provider()->generate_random(nullptr, 0);
        OPENSSL_cleanup();
    };
    EXPECT_EXIT(fail_after(withhold_memory), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(fail_after(end), testing::ExitedWithCode(0), "");
}

} // namespace
