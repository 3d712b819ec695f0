#pragma once

#include "vxattribute/attribute_value_impl.h"
#include "vxcore/ref_count_ptr.h"
#include "vxserialize/memory_list.h"

#include <atomic>

namespace vxattribute {

/// The element type of Serialized values: a payload that another component wrote, with a free text
/// that names its type. The library carries it and gives it no meaning.
///
/// The payload is shared by reference and never changed through this class; a copy costs one string
/// and one count. A value without payload (null or empty list) counts as empty, whatever its type
/// name says. The hash is computed once and kept: it travels with copies, and two threads that meet
/// at the first use compute the same number.
class VXATTRIBUTE_API SerializedValue {
  public:
    using Payload = vxcore::RefCountPtr<vxserialize::MemoryList const>;

    SerializedValue() noexcept = default;
    SerializedValue(std::string const & type, vxserialize::MemoryReader const & reader);
    SerializedValue(std::string const & type, vxserialize::MemoryWriter const & writer);
    SerializedValue(std::string const & type, Payload list);
    explicit SerializedValue(vxserialize::MemoryReader const & reader);
    explicit SerializedValue(vxserialize::MemoryWriter const & writer);
    explicit SerializedValue(Payload list) noexcept;

    SerializedValue(SerializedValue const & other);

    SerializedValue(SerializedValue && other) noexcept { swap(other); }

    SerializedValue & operator=(SerializedValue const & other);
    SerializedValue & operator=(SerializedValue && other) noexcept;
    ~SerializedValue() = default;

    /// Replaces type name and payload: the whole list of a reader, what stands in a writer so far,
    /// or a list. The forms without a type name clear it.
    void set(std::string const & type, vxserialize::MemoryReader const & reader);
    void set(std::string const & type, vxserialize::MemoryWriter const & writer);
    void set(std::string const & type, Payload list);
    void set(vxserialize::MemoryReader const & reader);
    void set(vxserialize::MemoryWriter const & writer);
    void set(Payload list) noexcept;

    void clear() noexcept { SerializedValue().swap(*this); }

    void swap(SerializedValue & other) noexcept;

    std::string const & type() const noexcept { return m_type; }

    Payload const & memory_list() const noexcept { return m_list; }

    /// Bytes of the payload.
    unsigned int size() const noexcept;

    bool empty() const noexcept { return size() == 0; }

    /// A reader from the start of the payload.
    vxserialize::MemoryReader memory_reader() const;

    /// 0 without payload, never 0 with one. O(size()) at the first call.
    unsigned int hash() const noexcept;

    /// Values without payload first and alike; then by type name, then by the bytes.
    int compare(SerializedValue const & other) const noexcept;

    /// Unlike `compare`, tells values without payload apart by their type names.
    friend bool operator==(SerializedValue const & a, SerializedValue const & b) noexcept {
        return a.size() == b.size() && a.m_type == b.m_type && a.compare(b) == 0;
    }

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
    unsigned int aux_calc_hash() const noexcept;

    std::string m_type;
    Payload m_list;
    mutable std::atomic<unsigned int> m_hash{0};
};

/// Writes a record of a one-field record with the type name, and the payload as one binary element.
VXATTRIBUTE_API void write_serialized_value(vxserialize::Writer & writer,
                                            SerializedValue const & value);

/// Reads what `write_serialized_value` wrote; when anything raises, `value` is as it was.
VXATTRIBUTE_API void read_serialized_value(vxserialize::Reader & reader, SerializedValue & value);

namespace impl {

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
