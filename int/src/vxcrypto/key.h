#pragma once

#include "vxcore/transfer_source.h"
#include "vxcrypto/export.h"

namespace vxcrypto {

/// The bytes of a key, in a heap buffer that is wiped before it is given back.
///
/// A key lies at one place: moving it hands the buffer over and never copies bytes, copying has to
/// be asked for with `clone()`, and nothing prints it. Keep keys out of strings and vectors, which
/// leave copies behind where they grow. Pages are not locked: a key may reach a swap device.
///
/// Invariant. The buffer has `capacity()` bytes, `size()` rounded up to a multiple of 8, and those
/// behind `size()` are 0. An empty key has no buffer.
///
/// Threads. One object: many readers or one writer.
class VXCRYPTO_API Key {
  public:
    /// An empty key; no allocation.
    Key() noexcept = default;

    /// `size` zeros, to be filled through `mutable_data()`.
    ///
    /// Explicit, so that a number where a key is expected does not compile.
    /// @raises std::length_error: `size` rounded up to a multiple of 8 is beyond 32 bits.
    explicit Key(unsigned int size);

    /// A copy of `size` bytes; wiping their place remains the caller's.
    ///
    /// @param bytes  May be null when `size` is 0.
    /// @raises std::length_error: as above.
    /// @raises std::invalid_argument: `bytes` is null and `size` is not 0.
    Key(void const * bytes, unsigned int size);

    /// Takes the buffer over; the source is empty then.
    Key(Key && other) noexcept { swap(other); }

    Key(vxcore::TransferSource<Key> source) noexcept { swap(source.get()); }

    /// Wipes the old bytes at once, then takes the buffer over; the source is empty then.
    Key & operator=(Key && other) noexcept {
        Key(static_cast<Key &&>(other)).swap(*this);
        return *this;
    }

    Key(Key const &) = delete;
    Key & operator=(Key const &) = delete;

    /// Wipes all `capacity()` bytes and frees them.
    ~Key();

    /// A second key with the same bytes in a buffer of its own: one more place that holds them.
    Key clone() const { return Key(m_data, m_size); }

    /// Bytes.
    unsigned int size() const noexcept { return m_size; }

    /// Bytes allocated.
    unsigned int capacity() const noexcept { return m_capacity; }

    bool empty() const noexcept { return m_size == 0; }

    /// Null for an empty key. @keeps Until the key is moved from, assigned to or destroyed.
    unsigned char const * data() const noexcept { return m_data; }

    /// The `size()` bytes for writing, as `data()`.
    unsigned char * mutable_data() noexcept { return m_data; }

    /// True when both have the same bytes. The time it takes depends on the sizes only.
    [[nodiscard]] bool equal(Key const & other) const noexcept;

    void swap(Key & other) noexcept;

    vxcore::TransferSource<Key> transfer() noexcept { return vxcore::TransferSource<Key>(*this); }

  private:
    unsigned int m_capacity = 0;
    unsigned int m_size = 0;
    unsigned char * m_data = nullptr;
};

} // namespace vxcrypto
