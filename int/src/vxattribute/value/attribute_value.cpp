#include "vxattribute/attribute_value.h"

#include "vxattribute/attribute_map.h"
#include "vxattribute/error_codes.h"
#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"

namespace vxattribute {

AttributeValue::AttributeValue(ValueTypeId const & type)
    : m_holder(impl::create_empty_value(type.id())) {}

AttributeValue::AttributeValue(AttributeMap const & map)
    : m_holder(impl::ValueFactory<AttributeMap>::create_value(map)) {}

AttributeValue::AttributeValue(MutableAttributeMap const & map)
    : AttributeValue(AttributeMap(map)) {}

void AttributeValue::set(AttributeMap const & map) {
    set_element<AttributeMap>(map);
}

void AttributeValue::set(MutableAttributeMap const & map) {
    set(AttributeMap(map));
}

int AttributeValue::compare_nocase_ascii(AttributeValue const & other) const {
    if (!(type() == ValueTypeId::typeString && other.type() == ValueTypeId::typeString)) {
        return compare(other);
    }
    auto const & left = typed<std::string>();
    auto const & right = other.typed<std::string>();
    std::string const * a = left.begin();
    std::string const * b = right.begin();
    for (; a != left.end() && b != right.end(); ++a, ++b) {
        int const order =
            vxcore::compare_nocase_ascii(a->data(), static_cast<unsigned int>(a->size()), b->data(),
                                         static_cast<unsigned int>(b->size()));
        if (order != 0) {
            return order;
        }
    }
    return int{a != left.end()} - int{b != right.end()};
}

void AttributeValue::raise_type_error(ValueTypeId const & expected) const {
    vxcore::ErrorComposer(
        "Attribute value type mismatch.  Expected={@expectedType}, ActualType={@actualType}")
        .param("expectedType", expected.name())
        .param("actualType", type().name())
        .throw_error(error::vxattribute_value_type_mismatch,
                     VXCORE_LOCATION("vxattribute::raise_type_error()"));
}

} // namespace vxattribute
