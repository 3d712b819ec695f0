#include "vxattribute/attribute_value_impl.h"

#include "vxattribute/element_types.h"
#include "vxattribute/error_codes.h"
#include "vxcore/error_composer.h"

#include <stdexcept>

namespace vxattribute::impl {

void throw_array_empty_error() {
    vxcore::throw_error(error::vxattribute_value_cardinality_expectNonzero,
                        vxcore::SourceString("Expecting non-empty attribute value", true),
                        VXCORE_LOCATION("vxattribute::impl::throw_array_empty_error()"));
}

void throw_get_on_multi_value_attribute() {
    vxcore::throw_error(
        error::vxattribute_value_cardinality_expectSingle,
        vxcore::SourceString("Attribute value 'get' invoked on multi-value attribute", true),
        VXCORE_LOCATION("vxattribute::impl::throw_get_on_multi_value_attribute()"));
}

void ValueBase::throw_at_range_error() {
    throw std::out_of_range("vxattribute::TypedValue<>::at");
}

void ValueBase::throw_subrange_range_error() {
    throw std::out_of_range("vxattribute::TypedValue<>::subrange");
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
