#pragma once

#include "vxattribute/attribute_value_impl.h"
#include "vxcore/ref_count_ptr.h"
#include "vxserialize/memory_list.h"

#include <atomic>

namespace vxattribute {

/// The element type of Serialized values: a payload that another component wrote, and a free text
/// that names its type. The library does not interpret either.
///
/// A value without payload (a null or empty list) is empty, whatever its type name.
///
///     vxserialize::MemoryWriter writer;
///     writer << 42u;
///     SerializedValue const order("shop.order", writer);
///     vxserialize::MemoryReader reader = order.memory_reader();
///     unsigned int const number = reader.read_uint(); // 42
///
/// Cost. The payload is shared and never changed through this class. A copy costs one string and
/// one count. An AttributeValue shares the whole object, so copying it costs one count.
///
/// Threads. One object: many readers or one writer. The hash is computed once and kept, in copies
/// too; two threads that compute it at the same time get the same number.
///
/// Errors. Copying and setting a type name raise std::bad_alloc. The value is then as it was.
class VXATTRIBUTE_API SerializedValue {
  public:
    /// The bytes; null means none.
    using Payload = vxcore::RefCountPtr<vxserialize::MemoryList const>;

    /// An empty value without type name.
    SerializedValue() noexcept = default;

    /// A value with the type name and payload that `set` takes.
    SerializedValue(std::string const & type, vxserialize::MemoryReader const & reader);
    SerializedValue(std::string const & type, vxserialize::MemoryWriter const & writer);
    SerializedValue(std::string const & type, Payload list);
    explicit SerializedValue(vxserialize::MemoryReader const & reader);
    explicit SerializedValue(vxserialize::MemoryWriter const & writer);
    explicit SerializedValue(Payload list) noexcept;

    /// Copies share the payload and keep the hash; a moved-from value is empty and without type
    /// name.
    SerializedValue(SerializedValue const & other);

    SerializedValue(SerializedValue && other) noexcept { swap(other); }

    /// Replaces type name and payload; `other` may be this value.
    SerializedValue & operator=(SerializedValue const & other);
    SerializedValue & operator=(SerializedValue && other) noexcept;

    /// Releases its reference to the payload.
    ~SerializedValue() = default;

    /// Replaces type name and payload. The payload is the whole list of a reader, also when it
    /// is not at its start, the content of a writer so far, or a list. It is shared; only bytes
    /// that a reader borrows are copied. The forms without a type name clear it.
    ///
    /// @param type  Any text; `type()` of this value is allowed.
    /// @param list  Must not be changed by others from now on: order and hash depend on it.
    /// @cost        One copy of the type name and one count.
    void set(std::string const & type, vxserialize::MemoryReader const & reader);
    void set(std::string const & type, vxserialize::MemoryWriter const & writer);
    void set(std::string const & type, Payload list);
    void set(vxserialize::MemoryReader const & reader);
    void set(vxserialize::MemoryWriter const & writer);
    void set(Payload list) noexcept;

    /// Removes type name and payload.
    void clear() noexcept { SerializedValue().swap(*this); }

    /// Exchanges two values. No allocation.
    void swap(SerializedValue & other) noexcept;

    /// The type name and the payload, valid until the value is changed or destroyed.
    std::string const & type() const noexcept { return m_type; }

    /// A copy of the pointer keeps the payload beyond this value.
    Payload const & memory_list() const noexcept { return m_list; }

    /// The size of the payload in bytes.
    unsigned int size() const noexcept;

    /// True without payload.
    bool empty() const noexcept { return size() == 0; }

    /// A reader at the start of the payload; an empty one without payload. It keeps the payload
    /// alive, so it may outlive this value. Bytes are not copied.
    vxserialize::MemoryReader memory_reader() const;

    /// Of the type name and the bytes. 0 without payload, never 0 with one. O(size()) at the first
    /// call, then O(1).
    unsigned int hash() const noexcept;

    /// Values without payload come first and compare equal. The others order by type name, then by
    /// bytes. Only the sign of the result counts. O(size()).
    int compare(SerializedValue const & other) const noexcept;

    /// Unlike `compare`, distinguishes values without payload by their type names. Compares the
    /// sizes first, so payloads of different sizes cost O(1).
    friend bool operator==(SerializedValue const & a, SerializedValue const & b) noexcept {
        return a.size() == b.size() && a.m_type == b.m_type && a.compare(b) == 0;
    }

    /// The sign of `compare`.
    friend bool operator<(SerializedValue const & a, SerializedValue const & b) noexcept {
        return a.compare(b) < 0;
    }

    friend bool operator<=(SerializedValue const & a, SerializedValue const & b) noexcept {
        return a.compare(b) <= 0;
    }

    friend bool operator>(SerializedValue const & a, SerializedValue const & b) noexcept {
        return a.compare(b) > 0;
    }

    friend bool operator>=(SerializedValue const & a, SerializedValue const & b) noexcept {
        return a.compare(b) >= 0;
    }

  private:
    /// Computes the hash and stores it.
    unsigned int aux_calc_hash() const noexcept;

    std::string m_type;
    Payload m_list;
    mutable std::atomic<unsigned int> m_hash{0}; // 0: not computed, or no payload
};

/// Writes a record of two fields: a record with the type name, and the payload as one binary
/// element. docs/formats/values.md describes the form.
///
/// @raises What the writer raises.
VXATTRIBUTE_API void write_serialized_value(vxserialize::Writer & writer,
                                            SerializedValue const & value);

/// Reads what `write_serialized_value` wrote. The payload is not interpreted.
///
/// @raises What the reader raises; `value` is then as it was.
VXATTRIBUTE_API void read_serialized_value(vxserialize::Reader & reader, SerializedValue & value);

namespace impl {

/// The rules of the element type: see value_type_traits.h. All follow the class.
template <>
struct VXATTRIBUTE_API ValueTypeTraits<SerializedValue> : ObjValueTypeTraits<SerializedValue> {
    /// Writes one element: its type name and size, never its content.
    struct TraceFunctor;

    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeSerialized; }

    static int compare(SerializedValue const & a, SerializedValue const & b) noexcept;
    static bool equal(SerializedValue const & a, SerializedValue const & b) noexcept;
    static unsigned int hash(SerializedValue const & a) noexcept;
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, SerializedValue const * begin,
                            SerializedValue const * end);
};

} // namespace impl
} // namespace vxattribute

VXATTRIBUTE_EXTERN_ELEMENT(vxattribute::SerializedValue);
