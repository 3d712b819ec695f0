#pragma once

#include "vxattribute/attribute_value_impl.h"
#include "vxserialize/fwd.h"

namespace vxattribute {

/// The element type of Binary values: an owned run of bytes with value semantics.
///
/// `data()` is null if the value was never set, so test `size()` for emptiness. Order and hash
/// treat bytes as unsigned.
///
///     BinaryValue const key(bytes, 16);
///     AttributeValue value(key);               // one copy of the bytes
///     AttributeValue const other = value;      // shares them
///
/// Cost. One block of the heap; none for a value that was never set. A copy copies the bytes, a
/// move two words. Bytes are not wiped when they are freed.
///
/// Threads. One object: many readers or one writer.
///
/// Errors. Whatever takes memory raises std::bad_alloc. After any failure the value is as it was.
class VXATTRIBUTE_API BinaryValue {
  public:
    /// The most bytes that `set` takes from a stream of known size: 16 MiB. It does not limit other
    /// ways to make a value.
    static constexpr unsigned int max_stream_size = 0x1000000;

    /// No bytes.
    constexpr BinaryValue() noexcept = default;

    /// `size` bytes, all zero.
    explicit BinaryValue(unsigned int size);

    /// A copy of the bytes. `data` may be null when `size` is 0.
    BinaryValue(unsigned char const * data, unsigned int size);

    /// The content of the stream, read and limited as by `set`.
    explicit BinaryValue(vxcore::IReadStream & stream);

    /// A copy of the bytes; the moving form leaves `other` empty.
    BinaryValue(BinaryValue const & other) : BinaryValue(other.m_data, other.m_size) {}

    BinaryValue(BinaryValue && other) noexcept { swap(other); }

    /// Copies the bytes. Between values of equal size this needs no allocation. The moving form
    /// leaves `other` empty.
    BinaryValue & operator=(BinaryValue const & other);

    BinaryValue & operator=(BinaryValue && other) noexcept {
        BinaryValue(std::move(other)).swap(*this);
        return *this;
    }

    /// Frees the bytes without wiping them.
    ~BinaryValue() { ::operator delete(m_data); }

    /// The bytes, valid until the value is assigned, resized, cleared, swapped or destroyed. They
    /// may be written through the first form. Of an empty value the pointer must not be read.
    unsigned char * data() noexcept { return m_data; }

    unsigned char const * data() const noexcept { return m_data; }

    /// The number of bytes.
    unsigned int size() const noexcept { return m_size; }

    /// True for 0 bytes.
    bool empty() const noexcept { return m_size == 0; }

    /// Removes and frees all bytes.
    void clear() noexcept { BinaryValue().swap(*this); }

    /// Exchanges the bytes. No allocation.
    void swap(BinaryValue & other) noexcept {
        std::swap(m_data, other.m_data);
        std::swap(m_size, other.m_size);
    }

    /// Replaces the bytes by a copy. `data` must not point into this value. The same size needs no
    /// allocation.
    void set(unsigned char const * data, unsigned int size);

    /// Replaces the bytes by the content of the stream. A stream of known size takes one allocation
    /// and one read. One of unknown size is read in growing pieces from 4096 bytes on, then copied
    /// to a block of its size. A read that returns fewer bytes than requested ends the data.
    ///
    /// @raises error.vxattribute.value.binary.size: the known size is above `max_stream_size`.
    ///         Nothing is read then.
    /// @raises std::length_error: a stream of unknown size delivers more than 2 GiB.
    /// @raises What the stream raises.
    void set(vxcore::IReadStream & stream);

    /// Keeps the first `size` bytes; added bytes are zero. Copies the kept bytes to a new block,
    /// unless the size is the same: do not grow a value byte by byte.
    void resize(unsigned int size);

    /// -1, 0 or 1: bytes as unsigned numbers, a prefix first. O(the smaller size).
    int compare(BinaryValue const & other) const noexcept;

    /// Folds the bytes as unsigned values: h = h * 5 + b. 0 without bytes. Not stored: O(size()).
    unsigned int hash() const noexcept;

    /// By the bytes, as `compare`. `==` compares the sizes first, so values of different sizes cost
    /// O(1).
    friend bool operator==(BinaryValue const & a, BinaryValue const & b) noexcept {
        return a.m_size == b.m_size && a.compare(b) == 0;
    }

    friend bool operator<(BinaryValue const & a, BinaryValue const & b) noexcept {
        return a.compare(b) < 0;
    }

    friend bool operator<=(BinaryValue const & a, BinaryValue const & b) noexcept {
        return a.compare(b) <= 0;
    }

    friend bool operator>(BinaryValue const & a, BinaryValue const & b) noexcept {
        return a.compare(b) > 0;
    }

    friend bool operator>=(BinaryValue const & a, BinaryValue const & b) noexcept {
        return a.compare(b) >= 0;
    }

  private:
    // See binary_value.cpp.
    static BinaryValue with_capacity(unsigned int capacity);
    void set_from_unsized(vxcore::IReadStream & stream);

    unsigned char * m_data = nullptr;
    unsigned int m_size = 0;
};

/// Writes the bytes of the value as one binary element.
///
/// @raises What the writer raises.
VXATTRIBUTE_API void write_binary_value(vxserialize::Writer & writer, BinaryValue const & value);

/// Reads one binary element, as `set` reads a stream.
///
/// @raises What the reader and `BinaryValue::set` raise; `value` is then as it was.
VXATTRIBUTE_API void read_binary_value(vxserialize::Reader & reader, BinaryValue & value);

namespace impl {

/// The rules of the element type: see value_type_traits.h. All follow the class. A value is
/// rendered as hexadecimal digits up to `TraceFormatter::max_binary_value_dump_bytes`, or as its
/// size.
template <>
struct VXATTRIBUTE_API ValueTypeTraits<BinaryValue> : ObjValueTypeTraits<BinaryValue> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeBinary; }

    static int compare(BinaryValue const & a, BinaryValue const & b) noexcept;
    static bool equal(BinaryValue const & a, BinaryValue const & b) noexcept;
    static unsigned int hash(BinaryValue const & a) noexcept;
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, BinaryValue const * begin,
                            BinaryValue const * end);
};

} // namespace impl
} // namespace vxattribute

VXATTRIBUTE_EXTERN_ELEMENT(vxattribute::BinaryValue);
