// OpenSSL deprecates its calls for single algorithms in favour of generic ones. Those need a
// fetched method and a second heap block, and take more time than the digest of a short text.
#define OPENSSL_SUPPRESS_DEPRECATED

#include "vxcrypto/md5_context.h"

#include <openssl/md5.h>

namespace vxcrypto {

namespace {

MD5_CTX * context(impl::CleansedBlock & block) noexcept {
    return static_cast<MD5_CTX *>(block.data());
}

} // namespace

Md5Context::Md5Context() {
    m_block.allocate(sizeof(MD5_CTX));
    MD5_Init(context(m_block));
}

void Md5Context::update(void const * data, std::size_t size) noexcept {
    MD5_Update(context(m_block), data, size);
}

void Md5Context::final(unsigned char * digest) noexcept {
    MD5_Final(digest, context(m_block));
}

} // namespace vxcrypto
