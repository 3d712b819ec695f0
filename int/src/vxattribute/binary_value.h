#pragma once

#include "vxattribute/attribute_value_impl.h"
#include "vxserialize/fwd.h"

namespace vxattribute {

/// The element type of Binary values: an owned run of bytes with value semantics.
///
/// A copy copies the bytes; sharing happens one level up, in the value. `data()` is null when the
/// value was never given bytes; emptiness is told by `size()` alone.
///
/// Order and hash take bytes as unsigned. One object: many readers or one writer.
class VXATTRIBUTE_API BinaryValue {
  public:
    /// The most bytes that `set` takes from a stream of known size: 16 MiB.
    static constexpr unsigned int max_stream_size = 0x1000000;

    constexpr BinaryValue() noexcept = default;

    /// `size` bytes, all zero.
    explicit BinaryValue(unsigned int size);

    /// A copy of the bytes.
    BinaryValue(unsigned char const * data, unsigned int size);

    /// As `set(stream)` on an empty value.
    explicit BinaryValue(vxcore::IReadStream & stream);

    BinaryValue(BinaryValue const & other) : BinaryValue(other.m_data, other.m_size) {}

    BinaryValue(BinaryValue && other) noexcept { swap(other); }

    /// Values of equal size are copied into the present block, without an allocation.
    BinaryValue & operator=(BinaryValue const & other);

    BinaryValue & operator=(BinaryValue && other) noexcept {
        BinaryValue(std::move(other)).swap(*this);
        return *this;
    }

    ~BinaryValue() { ::operator delete(m_data); }

    unsigned char * data() noexcept { return m_data; }

    unsigned char const * data() const noexcept { return m_data; }

    unsigned int size() const noexcept { return m_size; }

    bool empty() const noexcept { return m_size == 0; }

    void clear() noexcept { BinaryValue().swap(*this); }

    void swap(BinaryValue & other) noexcept {
        std::swap(m_data, other.m_data);
        std::swap(m_size, other.m_size);
    }

    /// Replaces the bytes by a copy. `data` must not point into this value.
    void set(unsigned char const * data, unsigned int size);

    /// Replaces the bytes by all that the stream gives, in one allocation and one read when the
    /// stream knows its size. A read that delivers less than asked ends the data.
    ///
    /// @raises error.vxattribute.value.binary.size: the stream knows its size and it is above
    ///         `max_stream_size`; nothing has been read then. A stream of unknown size has no
    ///         limit.
    void set(vxcore::IReadStream & stream);

    /// Keeps the first `size` bytes; new ones are zero.
    void resize(unsigned int size);

    /// -1, 0 or 1: bytes as unsigned numbers, a prefix first.
    int compare(BinaryValue const & other) const noexcept;

    /// Folds the bytes as unsigned values: h = h * 5 + b.
    unsigned int hash() const noexcept;

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
    static BinaryValue with_capacity(unsigned int capacity);
    void set_from_unsized(vxcore::IReadStream & stream);

    unsigned char * m_data = nullptr;
    unsigned int m_size = 0;
};

/// One binary element with the bytes of the value.
VXATTRIBUTE_API void write_binary_value(vxserialize::Writer & writer, BinaryValue const & value);

/// Reads what `write_binary_value` wrote; when anything raises, `value` is as it was.
VXATTRIBUTE_API void read_binary_value(vxserialize::Reader & reader, BinaryValue & value);

namespace impl {

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
