#pragma once

#include "vxattribute/attribute_value.h"
#include "vxcore/fwd.h"
#include "vxuri/fwd.h"

#include <string>
#include <typeinfo>

namespace vxattribute {

namespace impl {

template <typename T, typename... Types>
inline constexpr bool is_one_of = (std::same_as<T, Types> || ...);

/// The types that a configured value can be read into.
template <typename T>
concept Convertible =
    is_one_of<T, bool, char, signed char, unsigned char, short, unsigned short, int, unsigned int,
              long, unsigned long, long long, unsigned long long, double, std::string, vxcore::Uuid,
              vxuri::UriReference, vxcore::AbsoluteTime, vxcore::RelativeTime,
              vxcore::SimpleDateTime>;

} // namespace impl

/// A view of a configured value for reading it into a variable of an ordinary type.
///
///     unsigned short port = 0;
///     ConvertableValue(config.query("port")).assign_to(port);   // from 8080 or "8080"
///
/// The value has the type of the variable, or it is a String that is parsed, since files and
/// command lines hold texts. There are no other conversions: an Integer does not convert to double.
/// The value must be a scalar. A typed value without elements is read as the default of its type;
/// for a String that is the empty text, which is parsed like any other.
///
/// Texts: bool as `vxcore::impl::string_to_bool` reads it, numbers in decimal with an optional
/// sign and nothing around them, Uuid and times in their text forms, any text as a reference.
///
/// It refers to the value: use it only while the value lives and is not changed.
///
/// Errors, of all conversions; the target is then as it was.
/// - error.vxattribute.value.type.mismatch: a value of another type, for integers and strings.
/// - error.vxattribute.query.typeConversion: a value of another type, for all other variables.
/// - error.vxattribute.value.cardinality.expectSingle: several elements.
/// - error.vxcore.conversion: the text is not of that form, or out of range.
/// - error.vxcore.conversion.truncated: the integer does not fit.
class VXATTRIBUTE_API ConvertableValue {
  public:
    /// A view of `value`.
    explicit ConvertableValue(AttributeValue const & value VXCORE_LIFETIMEBOUND) noexcept
        : m_value(&value) {}

    /// The value as `T`. A `char` is read as a number from -128 to 127 on every platform.
    template <impl::Convertible T>
    T convert_to() const;

    /// Stores the value in `target` and returns `target`.
    template <impl::Convertible T>
    T & assign_to(T & target) const {
        // The local variable protects `target`. Without it, g++ 12 may overwrite `target` although
        // the conversion raises.
        T result = convert_to<T>();
        return target = static_cast<T &&>(result);
    }

    /// Raises the failure of a conversion that does not exist, for conversions of one's own.
    ///
    /// @param type  The type of the variable.
    /// @param info  Further text for the message; may be empty.
    /// @raises error.vxattribute.query.typeConversion
    [[noreturn]] static void throw_no_conversion(AttributeValue const & value,
                                                 std::type_info const & type,
                                                 std::string const & info);

  private:
    AttributeValue const * m_value;
};

} // namespace vxattribute
