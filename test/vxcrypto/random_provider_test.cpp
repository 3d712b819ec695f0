#include "openssl_watch.h"
#include "support/expect_error.h"
#include "vectors.h"

#include "vxcrypto/random_provider.h"

namespace {

using namespace vxtest;

void expect_failure(void * buffer, unsigned int size, char const * code, char const * text) {
    auto const info =
        expect_error([&] { vxcrypto::default_random_provider()->generate_random(buffer, size); },
                     vxcore::ErrorCode(code, true), text);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->location().function().view(),
              "vxcrypto::impl::DefaultRandomProviderImpl::generate_random()");
}

TEST(RandomProvider, FillsTheBufferAndNoMore) {
    std::string first(40, '\0');
    std::string second(40, '\0');
    for (std::string * const buffer : {&first, &second}) {
        vxcrypto::default_random_provider()->generate_random(buffer->data() + 4, 32);
        EXPECT_EQ(buffer->substr(0, 4) + buffer->substr(36), std::string(8, '\0'));
    }
    EXPECT_NE(first, second);
    std::string const before = first;
    vxcrypto::default_random_provider()->generate_random(first.data(), 0);
    EXPECT_EQ(first, before);
}

TEST(RandomProvider, MixesTheTimeInBeforeItLooksAtTheArguments) {
    OpensslWatch watch;
    auto const provider = vxcrypto::default_random_provider();
    provider->generate_random(nullptr, 0x80000000u);
    provider->generate_random(nullptr, 16);
    EXPECT_EQ(watch.calls.requested, 0u);
    char buffer[16];
    for (unsigned int const size : {0x80000000u, 0xFFFFFFFFu}) {
        expect_failure(buffer, size, "error.vxcrypto.randomProvider.arguments",
                       "Invalid 'size' argument");
    }
    EXPECT_EQ(watch.calls.requested, 0u);
    provider->generate_random(buffer, 0);
    EXPECT_EQ(watch.calls.requested, 1u);
    watch.calls.refuse = true;
    expect_failure(buffer, 16, "error.vxcrypto.randomProvider.failed",
                   "Random provider failed to generate requested number of bytes");
    EXPECT_EQ(watch.calls.added, 6u);
    EXPECT_EQ(watch.calls.credit, 0);
}

} // namespace
