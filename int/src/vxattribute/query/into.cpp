#include "vxattribute/into.h"

#include "vxattribute/core_elements.h"

namespace vxattribute::impl {

namespace {

/// A text is parsed, as double if ConvertableValue has no such type.
template <Number T>
T number_from_text(AttributeValue const & text) {
    if constexpr (Convertible<T>) {
        return ConvertableValue(text).convert_to<T>();
    } else {
        return get_number<T>(ConvertableValue(text).convert_to<double>());
    }
}

} // namespace

template <typename T>
T scalar_from(AttributeValue const & value) {
    ValueTypeId const & type = value.type();
    bool const isText = type == ValueTypeId::typeString;
    bool const isInteger = type == ValueTypeId::typeInteger;
    if constexpr (Number<T>) {
        if (isInteger || type == ValueTypeId::typeDouble) {
            return value.empty() ? T() : get_number<T>(value); // empty: as for ConvertableValue
        }
        if (isText) {
            return number_from_text<T>(value);
        }
        throw_not_readable(value, typeid(T));
    } else {
        // Here the failures of ConvertableValue name the element type, not that of the variable.
        bool const isRefused = (std::same_as<T, std::string> && !isText) ||
                               (std::same_as<T, char> && !isText && !isInteger);
        if (isRefused) {
            throw_not_readable(value, typeid(T));
        }
        return ConvertableValue(value).convert_to<T>();
    }
}

// The template itself is not in the header.
#define VXATTRIBUTE_SCALAR(T) template T scalar_from<T>(AttributeValue const &)

VXATTRIBUTE_SCALAR(bool);
VXATTRIBUTE_SCALAR(char);
VXATTRIBUTE_SCALAR(signed char);
VXATTRIBUTE_SCALAR(unsigned char);
VXATTRIBUTE_SCALAR(short);
VXATTRIBUTE_SCALAR(unsigned short);
VXATTRIBUTE_SCALAR(int);
VXATTRIBUTE_SCALAR(unsigned int);
VXATTRIBUTE_SCALAR(long);
VXATTRIBUTE_SCALAR(unsigned long);
VXATTRIBUTE_SCALAR(long long);
VXATTRIBUTE_SCALAR(unsigned long long);
VXATTRIBUTE_SCALAR(float);
VXATTRIBUTE_SCALAR(double);
VXATTRIBUTE_SCALAR(long double);
VXATTRIBUTE_SCALAR(std::string);
VXATTRIBUTE_SCALAR(vxcore::Uuid);
VXATTRIBUTE_SCALAR(vxuri::UriReference);
VXATTRIBUTE_SCALAR(vxcore::AbsoluteTime);
VXATTRIBUTE_SCALAR(vxcore::RelativeTime);
VXATTRIBUTE_SCALAR(vxcore::SimpleDateTime);

#undef VXATTRIBUTE_SCALAR

} // namespace vxattribute::impl
