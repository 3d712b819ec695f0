#include "vxcrypto/random_provider.h"

#include "vxcore/cpu.h"
#include "vxcore/error_exception.h"
#include "vxcrypto/error_codes_internal.h"

#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/rand.h>

namespace vxcrypto {

namespace impl {

class DefaultRandomProviderImpl final : public IRandomProvider {
  public:
    void generate_random(void * buffer, unsigned int size) override;

  private:
    [[noreturn]] static void fail(vxcore::ErrorCode const & code, char const * message) {
        vxcore::throw_error(
            code, vxcore::SourceString(message, true),
            VXCORE_LOCATION("vxcrypto::impl::DefaultRandomProviderImpl::generate_random()"));
    }
};

namespace {

/// False when OpenSSL had no memory to start, or has ended before the last destructors run. Calling
/// its generator would then crash.
bool is_openssl_running() noexcept {
    return OPENSSL_init_crypto(0, nullptr) == 1 && OSSL_LIB_CTX_get0_global_default() != nullptr;
}

/// Removes the entries that OpenSSL adds to the thread's error queue during the lifetime of this
/// object. The exception already reports them, and callers of OpenSSL would take an entry left
/// there for the failure of a later call. Older entries stay.
class ErrorQueueMark {
  public:
    ErrorQueueMark() noexcept { ERR_set_mark(); }

    ErrorQueueMark(ErrorQueueMark const &) = delete;
    ErrorQueueMark & operator=(ErrorQueueMark const &) = delete;

    ~ErrorQueueMark() { ERR_pop_to_mark(); }
};

} // namespace

void DefaultRandomProviderImpl::generate_random(void * buffer, unsigned int size) {
    ErrorQueueMark const mark;
    unsigned long long const timestamp = vxcore::hardware::Cpu::read_timestamp();
    bool const isRunning = is_openssl_running();
    if (isRunning) {
        // Mixed into the state, but counted as no entropy.
        RAND_add(&timestamp, sizeof timestamp, 0.0);
    }
    if (buffer == nullptr) {
        return;
    }
    int const count = static_cast<int>(size);
    if (count < 0) {
        fail(error::vxcrypto_randomProvider_arguments, "Invalid 'size' argument");
    }
    if (!isRunning || RAND_bytes(static_cast<unsigned char *>(buffer), count) != 1) {
        fail(error::vxcrypto_randomProvider_failed,
             "Random provider failed to generate requested number of bytes");
    }
}

namespace {

// Has no data and is initialised at compile time, so that it works before any load-time code has
// run and after unload.
constinit DefaultRandomProviderImpl instance;

} // namespace
} // namespace impl

RandomProviderPtr default_random_provider() noexcept {
    return RandomProviderPtr(&impl::instance, nullptr);
}

} // namespace vxcrypto
