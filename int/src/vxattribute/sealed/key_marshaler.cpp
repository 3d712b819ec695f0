#include "vxattribute/error_codes.h"
#include "vxattribute/sealed/key_marshaler_internal.h"
#include "vxattribute/stream/bare_kind_internal.h"
#include "vxattribute/stream/marshaled_type_internal.h"
#include "vxcore/error_composer.h"
#include "vxserialize/memory_reader.h"
#include "vxserialize/writer.h"

namespace vxattribute::impl {

namespace {

constexpr char const readKey[] = "vxattribute::impl::read_key_as_binary()";

[[noreturn]] void throw_not_binary(std::string const & actualType) {
    vxcore::ErrorComposer(
        "Only Binary attribute values can be read as Key.  TypeFound={@actualType}")
        .param("expectedType", ValueTypeId::typeBinary.name())
        .param("actualType", actualType)
        .throw_error(error::vxattribute_value_type_mismatch, VXCORE_LOCATION(readKey));
}

[[noreturn]] void throw_not_scalar() {
    vxcore::throw_error(
        error::vxattribute_value_cardinality_expectSingle,
        vxcore::SourceString("Only scalar binary attributes can be read as Key", true),
        VXCORE_LOCATION(readKey));
}

/// The type of a value that is one element without a type number; Binary for the kinds that start
/// other values, whose type number follows.
ValueTypeId const & bare_type(vxserialize::EElementKind kind) {
    if (kind == vxserialize::eElement_Null) {
        return ValueTypeId::typeNull;
    }
    return *with_bare_element_type(
        kind, []<typename T>() { return &ValueTypeTraits<T>::type(); },
        [] { return &ValueTypeId::typeBinary; });
}

/// The element of a tagged Binary: bare, or a list that must have exactly one.
vxcore::RefCountPtr<vxserialize::MemoryList> read_only_element(vxserialize::MemoryReader & reader) {
    if (reader.next_type() != vxserialize::eElement_List) {
        return reader.read_binary_as_memory_list();
    }
    reader.begin_list();
    if (!reader.has_next()) {
        throw_not_scalar();
    }
    vxcore::RefCountPtr<vxserialize::MemoryList> bytes = reader.read_binary_as_memory_list();
    if (reader.has_next()) {
        throw_not_scalar();
    }
    return bytes;
}

/// The bytes of a value that is one Binary, in any form that a marshaled value may have: a bare
/// element, or a type tag followed by an element or a list.
vxcore::RefCountPtr<vxserialize::MemoryList> read_bytes(vxserialize::MemoryReader & reader) {
    vxserialize::EElementKind const kind = reader.next_type();
    if (kind == vxserialize::eElement_Binary) {
        return reader.read_binary_as_memory_list();
    }
    if (ValueTypeId const & type = bare_type(kind); !(type == ValueTypeId::typeBinary)) {
        throw_not_binary(type.name());
    }
    unsigned int const tag = reader.read_uint();
    if (tag >= static_cast<unsigned int>(ValueTypeId::count)) {
        throw_unknown_tag(tag, VXCORE_LOCATION(readKey));
    }
    if (tag != ValueTypeId::eId_Binary) {
        throw_not_binary(ValueTypeId::from_id(static_cast<ValueTypeId::EId>(tag)).name());
    }
    return read_only_element(reader);
}

} // namespace

void write_key_as_binary(vxserialize::Writer & writer, vxcrypto::Key const & key) {
    writer.write_binary(key.data(), key.size());
}

vxcrypto::Key read_key_as_binary(vxserialize::MemoryReader & reader) {
    vxcore::RefCountPtr<vxserialize::MemoryList> const bytes = read_bytes(reader);
    if (!bytes) {
        throw_not_binary("Unknown");
    }
    // Straight from the list into the key: a copy in between would have to be wiped.
    vxcrypto::Key key(bytes->size());
    bytes->read_at(0, key.mutable_data(), key.size());
    return key;
}

} // namespace vxattribute::impl
