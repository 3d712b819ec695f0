#include "vxcrypto/constant_time.h"

#include <openssl/crypto.h>

namespace vxcrypto {

bool constant_time_equal(void const * a, void const * b, std::size_t size) noexcept {
    return CRYPTO_memcmp(a, b, size) == 0;
}

} // namespace vxcrypto
