#include "vxattribute/serialized_value.h"

#include "vxattribute/memory_list_order.h"
#include "vxattribute/value/typed_value_internal.h"
#include "vxcore/hash.h"
#include "vxserialize/memory_reader.h"
#include "vxserialize/memory_writer.h"

namespace vxattribute {

SerializedValue::SerializedValue(std::string const & type,
                                 vxserialize::MemoryReader const & reader) {
    set(type, reader);
}

SerializedValue::SerializedValue(std::string const & type,
                                 vxserialize::MemoryWriter const & writer) {
    set(type, writer);
}

SerializedValue::SerializedValue(std::string const & type, Payload list) {
    set(type, std::move(list));
}

SerializedValue::SerializedValue(vxserialize::MemoryReader const & reader) {
    set(reader);
}

SerializedValue::SerializedValue(vxserialize::MemoryWriter const & writer) {
    set(writer);
}

SerializedValue::SerializedValue(Payload list) noexcept : m_list(std::move(list)) {}

SerializedValue::SerializedValue(SerializedValue const & other)
    : m_type(other.m_type), m_list(other.m_list),
      m_hash(other.m_hash.load(std::memory_order_relaxed)) {}

SerializedValue & SerializedValue::operator=(SerializedValue const & other) {
    SerializedValue(other).swap(*this);
    return *this;
}

SerializedValue & SerializedValue::operator=(SerializedValue && other) noexcept {
    SerializedValue(std::move(other)).swap(*this);
    return *this;
}

void SerializedValue::set(std::string const & type, vxserialize::MemoryReader const & reader) {
    set(type, reader.own_memory_list());
}

void SerializedValue::set(std::string const & type, vxserialize::MemoryWriter const & writer) {
    set(type, writer.reader().memory_list());
}

void SerializedValue::set(std::string const & type, Payload list) {
    // Built aside: copying `type` may raise, and `type` may be that of this value.
    SerializedValue fresh(std::move(list));
    fresh.m_type = type;
    swap(fresh);
}

void SerializedValue::set(vxserialize::MemoryReader const & reader) {
    set(reader.own_memory_list());
}

void SerializedValue::set(vxserialize::MemoryWriter const & writer) {
    set(writer.reader().memory_list());
}

void SerializedValue::set(Payload list) noexcept {
    SerializedValue(std::move(list)).swap(*this);
}

void SerializedValue::swap(SerializedValue & other) noexcept {
    // Not atomic as a whole: swapping is a write, during which no other thread uses the objects.
    m_type.swap(other.m_type);
    m_list.swap(other.m_list);
    unsigned int const hash = m_hash.load(std::memory_order_relaxed);
    m_hash.store(other.m_hash.load(std::memory_order_relaxed), std::memory_order_relaxed);
    other.m_hash.store(hash, std::memory_order_relaxed);
}

unsigned int SerializedValue::size() const noexcept {
    return m_list ? m_list->size() : 0;
}

vxserialize::MemoryReader SerializedValue::memory_reader() const {
    return m_list ? vxserialize::MemoryReader(m_list) : vxserialize::MemoryReader();
}

unsigned int SerializedValue::hash() const noexcept {
    // Relaxed, since threads that get here at the same time compute and store the same hash.
    unsigned int const known = m_hash.load(std::memory_order_relaxed);
    return known != 0 ? known : aux_calc_hash();
}

unsigned int SerializedValue::aux_calc_hash() const noexcept {
    if (empty()) {
        return 0;
    }
    unsigned int h = impl::hash_memory_list(m_list);
    h = vxcore::hash_mix(h, vxcore::hash_bytes(m_type));
    if (h == 0) {
        h = size(); // 0 says "not computed"
    }
    m_hash.store(h, std::memory_order_relaxed);
    return h;
}

int SerializedValue::compare(SerializedValue const & other) const noexcept {
    // Values without payload are equal, whatever their types.
    if (empty() || other.empty()) {
        return int{!empty()} - int{!other.empty()};
    }
    int const order = m_type.compare(other.m_type);
    return order != 0 ? order : impl::compare_memory_lists(m_list, other.m_list);
}

void write_serialized_value(vxserialize::Writer & writer, SerializedValue const & value) {
    writer.begin_record();
    writer.begin_record();
    writer << value.type();
    writer.end_record();
    vxserialize::write_memory_list_as_binary(writer, value.memory_list());
    writer.end_record();
}

void read_serialized_value(vxserialize::Reader & reader, SerializedValue & value) {
    std::string type;
    reader.begin_record();
    reader.begin_record();
    reader >> type;
    reader.end_record();
    SerializedValue fresh(type, vxserialize::read_memory_list_as_binary(reader));
    reader.end_record();
    value.swap(fresh);
}

namespace impl {

int ValueTypeTraits<SerializedValue>::compare(SerializedValue const & a,
                                              SerializedValue const & b) noexcept {
    return a.compare(b);
}

bool ValueTypeTraits<SerializedValue>::equal(SerializedValue const & a,
                                             SerializedValue const & b) noexcept {
    return a == b;
}

unsigned int ValueTypeTraits<SerializedValue>::hash(SerializedValue const & a) noexcept {
    return a.hash();
}

} // namespace impl

} // namespace vxattribute

VXATTRIBUTE_INSTANTIATE_ELEMENT(vxattribute::SerializedValue);
