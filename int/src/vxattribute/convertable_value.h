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

/// What a configured value can be read into.
template <typename T>
concept Convertible =
    is_one_of<T, bool, char, signed char, unsigned char, short, unsigned short, int, unsigned int,
              long, unsigned long, long long, unsigned long long, double, std::string, vxcore::Uuid,
              vxuri::UriReference, vxcore::AbsoluteTime, vxcore::RelativeTime,
              vxcore::SimpleDateTime>;

} // namespace impl

/// A view of a configured value for reading it into a variable of an ordinary type.
///
/// The value is taken in its proper type, or as a String that is parsed: files and command lines
/// give texts. There is no other way between types: an Integer is not a double. The value must be a
/// scalar; an empty one gives the default, an empty String a text that is parsed like any other.
///
/// Texts: bool as `vxcore::impl::string_to_bool` reads it, numbers in decimal with an optional
/// sign and nothing around them, Uuid and times in their text forms, any text as a reference.
///
/// Refers to the value and is used only while that lives and is not changed.
///
/// Errors, of all conversions; the target is as it was then.
/// - error.vxattribute.value.type.mismatch: of another type, for integers and strings.
/// - error.vxattribute.query.typeConversion: of another type, for all else.
/// - error.vxattribute.value.cardinality.expectSingle: several elements.
/// - error.vxcore.conversion: the text is no such thing, or out of range.
/// - error.vxcore.conversion.truncated: the integer does not fit.
class VXATTRIBUTE_API ConvertableValue {
  public:
    explicit ConvertableValue(AttributeValue const & value VXCORE_LIFETIMEBOUND) noexcept
        : m_value(&value) {}

    /// The value as `T`. A `char` is a number from -128 to 127 on every platform.
    template <impl::Convertible T>
    T convert_to() const;

    /// Puts the value into `target`.
    ///
    /// @return `target`
    template <impl::Convertible T>
    T & assign_to(T & target) const {
        // A temporary first: g++ 12 takes the result of a call for stored even when the call
        // raises, and drops what the caller's local variable held before.
        T result = convert_to<T>();
        return target = static_cast<T &&>(result);
    }

    /// For conversions that have no way from the type of `value` to `type`.
    ///
    /// @param info  What else there is to say; may be empty.
    /// @raises error.vxattribute.query.typeConversion
    [[noreturn]] static void throw_no_conversion(AttributeValue const & value,
                                                 std::type_info const & type,
                                                 std::string const & info);

  private:
    AttributeValue const * m_value;
};

} // namespace vxattribute
