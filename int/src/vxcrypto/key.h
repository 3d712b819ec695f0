#pragma once

#include "vxcore/transfer_source.h"
#include "vxcrypto/export.h"

namespace vxcrypto {

/// The bytes of a key, in a heap buffer that is wiped before it is freed.
///
/// A key is in one place: moving it transfers the buffer without copying bytes, only `clone()`
/// copies, and nothing prints it. Do not keep keys in strings or vectors, which leave copies in
/// freed memory when they grow. Pages are not locked: a key may be written to a swap device.
///
/// Invariant. The buffer has `capacity()` bytes: `size()` rounded up to a multiple of 8. The bytes
/// from `size()` on are 0. An empty key has no buffer.
///
/// Threads. One object: many readers or one writer.
class VXCRYPTO_API Key {
  public:
    /// An empty key; no allocation.
    Key() noexcept = default;

    /// A key of `size` zero bytes, to be filled through `mutable_data()`.
    ///
    /// Explicit, so that passing a number for a key does not compile.
    /// @raises std::length_error: `size` rounded up to a multiple of 8 exceeds 32 bits.
    explicit Key(unsigned int size);

    /// A copy of `size` bytes. The caller wipes the original.
    ///
    /// @param bytes  May be null when `size` is 0.
    /// @raises std::length_error: as above.
    /// @raises std::invalid_argument: `bytes` is null and `size` is not 0.
    Key(void const * bytes, unsigned int size);

    /// A new key of random bytes from `default_random_provider()`.
    ///
    ///     Key const key = Key::random();
    ///
    /// @param bits  128 or 256, the sizes of the keys that seal values. Bits, not bytes as in the
    ///              constructors.
    /// @raises error.vxcrypto.key.size: any other number of bits.
    /// @raises error.vxcrypto.randomProvider.failed: the generator returned no bytes.
    static Key random(unsigned int bits = 256);

    /// Takes over the buffer; the source is empty afterwards.
    Key(Key && other) noexcept { swap(other); }

    /// As the move constructor, from `transfer()`.
    Key(vxcore::TransferSource<Key> source) noexcept { swap(source.get()); }

    /// Takes over the buffer and wipes the old one; the source is empty afterwards.
    Key & operator=(Key && other) noexcept {
        Key(static_cast<Key &&>(other)).swap(*this);
        return *this;
    }

    Key(Key const &) = delete;
    Key & operator=(Key const &) = delete;

    /// Wipes all `capacity()` bytes and frees them.
    ~Key();

    /// A second key with the same bytes in its own buffer.
    ///
    /// @raises std::bad_alloc
    Key clone() const { return Key(m_data, m_size); }

    /// In bytes.
    unsigned int size() const noexcept { return m_size; }

    /// The size of the buffer in bytes.
    unsigned int capacity() const noexcept { return m_capacity; }

    bool empty() const noexcept { return m_size == 0; }

    /// The bytes; null for an empty key.
    ///
    /// @keeps  The pointer is valid until the key is moved from, assigned to or destroyed.
    unsigned char const * data() const noexcept { return m_data; }

    /// As `data()`, for writing.
    unsigned char * mutable_data() noexcept { return m_data; }

    /// True when both keys have the same bytes. The time it takes depends on the sizes only.
    [[nodiscard]] bool equal(Key const & other) const noexcept;

    /// Exchanges the buffers without copying bytes.
    void swap(Key & other) noexcept;

    /// Wraps this key for a function that takes over its buffer.
    vxcore::TransferSource<Key> transfer() noexcept { return vxcore::TransferSource<Key>(*this); }

  private:
    unsigned int m_capacity = 0;
    unsigned int m_size = 0;
    unsigned char * m_data = nullptr;
};

} // namespace vxcrypto
