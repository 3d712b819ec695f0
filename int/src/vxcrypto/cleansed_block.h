#pragma once

#include "vxcrypto/export.h"

namespace vxcrypto::impl {

/// One heap block for a fixed-size structure of OpenSSL, wiped before it is given back. It keeps
/// the structure's type out of our headers, and its bytes at one place: it is neither copied nor
/// moved.
///
/// Empty at first: no block, size 0.
class VXCRYPTO_API CleansedBlock {
  public:
    CleansedBlock() noexcept = default;
    CleansedBlock(CleansedBlock const &) = delete;
    CleansedBlock & operator=(CleansedBlock const &) = delete;

    /// Wipes the block and frees it.
    ~CleansedBlock();

    /// Gives an empty holder its block. Does nothing when there is one already.
    ///
    /// @param size  Bytes; aligned for every ordinary type, their content is not set.
    /// @raises std::bad_alloc: the holder stays empty then.
    void allocate(unsigned int size);

    void * data() noexcept { return m_block; }

    void const * data() const noexcept { return m_block; }

    /// Bytes.
    unsigned int size() const noexcept { return m_size; }

  private:
    unsigned int m_size = 0;
    void * m_block = nullptr;
};

} // namespace vxcrypto::impl
