#include "vxcrypto/cleanse.h"

#include <openssl/crypto.h>

namespace vxcrypto {

void cleanse(void * data, std::size_t size) noexcept {
    OPENSSL_cleanse(data, size);
}

} // namespace vxcrypto
