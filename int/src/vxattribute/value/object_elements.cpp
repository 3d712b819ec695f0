#include "vxattribute/element_types.h"
#include "vxattribute/value/typed_value_internal.h"

namespace vxattribute::impl {

int ValueTypeTraits<BinaryValue>::compare(BinaryValue const & a, BinaryValue const & b) noexcept {
    return a.compare(b);
}

bool ValueTypeTraits<BinaryValue>::equal(BinaryValue const & a, BinaryValue const & b) noexcept {
    return a == b;
}

unsigned int ValueTypeTraits<BinaryValue>::hash(BinaryValue const & a) noexcept {
    return a.hash();
}

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

int ValueTypeTraits<SecuredValue>::compare(SecuredValue const & a,
                                           SecuredValue const & b) noexcept {
    return a.compare(b);
}

bool ValueTypeTraits<SecuredValue>::equal(SecuredValue const & a, SecuredValue const & b) noexcept {
    return a == b;
}

unsigned int ValueTypeTraits<SecuredValue>::hash(SecuredValue const & a) noexcept {
    return a.hash();
}

ValueBase * create_empty_value(ValueTypeId::EId id) {
    ValueBase * value = ValueFactory<NullValueType>::create_value();
    bool const isKnown =
        id == ValueTypeId::eId_Null ||
        for_element_type(id, [&value]<typename T>() { value = ValueFactory<T>::create_value(); });
    if (!isKnown) {
        throw_unknown_type_id(id);
    }
    return value;
}

} // namespace vxattribute::impl

VXATTRIBUTE_INSTANTIATE_ELEMENT(vxattribute::BinaryValue);
VXATTRIBUTE_INSTANTIATE_ELEMENT(vxattribute::SerializedValue);
VXATTRIBUTE_INSTANTIATE_ELEMENT(vxattribute::SecuredValue);
