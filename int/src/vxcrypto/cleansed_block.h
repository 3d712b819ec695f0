#pragma once

#include "vxcrypto/export.h"

namespace vxcrypto::impl {

/// One heap block for a fixed-size structure of OpenSSL, wiped before it is freed.
///
/// It keeps the type of the structure out of the headers. It can be neither copied nor moved, so
/// the bytes are in one place only.
///
/// Threads. One object: many readers or one writer.
class VXCRYPTO_API CleansedBlock {
  public:
    /// An empty holder: no block, size 0.
    CleansedBlock() noexcept = default;
    CleansedBlock(CleansedBlock const &) = delete;
    CleansedBlock & operator=(CleansedBlock const &) = delete;

    /// Wipes the block and frees it.
    ~CleansedBlock();

    /// Allocates the block. Does nothing when there is one already.
    ///
    /// @param size  In bytes. The block is aligned for every ordinary type and not initialised.
    /// @raises std::bad_alloc: the holder stays empty.
    void allocate(unsigned int size);

    /// The block; null for an empty holder. Valid as long as the holder: the block is never
    /// replaced.
    void * data() noexcept { return m_block; }

    /// As above.
    void const * data() const noexcept { return m_block; }

    /// The size of the block in bytes; 0 for an empty holder.
    unsigned int size() const noexcept { return m_size; }

  private:
    unsigned int m_size = 0;
    void * m_block = nullptr;
};

} // namespace vxcrypto::impl
