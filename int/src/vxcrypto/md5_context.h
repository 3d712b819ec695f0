#pragma once

#include "vxcrypto/cleansed_block.h"

#include <cstddef>

namespace vxcrypto {

/// Computes the MD5 digest (RFC 1321) of data that comes in pieces.
///
/// Use it to tell apart contents that nobody forges. It protects against no attacker: two contents
/// with the same digest can be made in seconds.
///
///     Md5Context md5;
///     md5.update(text.data(), text.size());
///     unsigned char digest[Md5Context::digest_size];
///     md5.final(digest);
///
/// Cost. One heap block per object; updates copy at most 63 bytes.
///
/// Threads. One object belongs to one thread at a time.
class VXCRYPTO_API Md5Context {
  public:
    /// The size of a digest in bytes.
    static constexpr unsigned int digest_size = 16;

    /// Starts the digest of no bytes.
    ///
    /// @raises std::bad_alloc
    Md5Context();

    /// Wipes the state of the digest.
    ~Md5Context() = default;

    Md5Context(Md5Context const &) = delete;
    Md5Context & operator=(Md5Context const &) = delete;

    /// Adds `size` bytes. How the data is cut into pieces makes no difference.
    void update(void const * data, std::size_t size) noexcept;

    /// Writes the digest, `digest_size` bytes. Afterwards the context can only be destroyed.
    void final(unsigned char * digest) noexcept;

  private:
    impl::CleansedBlock m_block;
};

} // namespace vxcrypto
