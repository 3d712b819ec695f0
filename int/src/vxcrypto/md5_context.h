#pragma once

#include "vxcrypto/cleansed_block.h"

#include <cstddef>

namespace vxcrypto {

/// The MD5 digest (RFC 1321) of bytes that come in pieces.
///
/// Good for telling contents apart that nobody forges. It is no protection against anybody: two
/// contents of one digest are made in seconds.
///
///     Md5Context md5;
///     md5.update(text.data(), text.size());
///     unsigned char digest[Md5Context::digest_size];
///     md5.final(digest);
///
/// Cost. One heap block for each object; updates copy at most 63 bytes.
///
/// Threads. One object belongs to one thread at a time.
class VXCRYPTO_API Md5Context {
  public:
    static constexpr unsigned int digest_size = 16;

    /// @raises std::bad_alloc
    Md5Context();

    /// Wipes what the digest was made from.
    ~Md5Context() = default;

    Md5Context(Md5Context const &) = delete;
    Md5Context & operator=(Md5Context const &) = delete;

    /// Adds `size` bytes. Any number of calls with pieces of any size give the digest of the whole.
    void update(void const * data, std::size_t size) noexcept;

    /// Writes the digest, `digest_size` bytes. The context is spent then: it can only be destroyed.
    void final(unsigned char * digest) noexcept;

  private:
    impl::CleansedBlock m_block;
};

} // namespace vxcrypto
