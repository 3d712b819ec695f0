#pragma once

#include "vxattribute/convertable_value.h"
#include "vxattribute/settings.h"
#include "vxcore/error_exception.h"

#include <limits>

/// The rules for elements of settings, which find_problems and bindings share. Include bind.h.
namespace vxattribute::impl {

/// The range of a setting, for numbers of both types.
struct VXATTRIBUTE_API NumberLimits {
    NumberLimits() noexcept = default;

    /// A limit of the other type is rounded to the inside of the range for integers, and to the
    /// nearest number for doubles. A limit that is no number is none.
    explicit NumberLimits(Setting const & setting);

    bool contain(long long number) const noexcept { return lowest <= number && number <= highest; }

    /// A NaN is contained only if there are no limits.
    bool contain(double number) const noexcept {
        return !areSet || (lowestDouble <= number && number <= highestDouble);
    }

    bool areSet = false;
    long long lowest = std::numeric_limits<long long>::min();
    long long highest = std::numeric_limits<long long>::max();
    double lowestDouble = -std::numeric_limits<double>::infinity();
    double highestDouble = std::numeric_limits<double>::infinity();
};

/// The types whose elements may also be Strings, because JSON has no other form for them.
template <typename T>
concept TextFormType = is_one_of<T, vxcore::Uuid, vxuri::UriReference, vxcore::AbsoluteTime,
                                 vxcore::RelativeTime, vxcore::SimpleDateTime>;

/// Reads one element from its own type or from a String. Returns false if it is neither.
///
/// @cost  An exception when it fails.
template <TextFormType T>
bool read_text_form(AttributeValue const & value, unsigned int index, T & target) {
    try {
        ConvertableValue(value.subrange(index, 1)).assign_to(target);
        return true;
    } catch (vxcore::ErrorException const &) {
        return false;
    }
}

/// The value of a setting: that of the first of its names that is present, or null.
inline AttributeValue const * find_setting(Setting const & setting,
                                           AttributeMapBase const & map VXCORE_LIFETIMEBOUND) {
    AttributeValue const * value = map.query_ptr(setting.name);
    for (auto name = setting.alternates.begin();
         value == nullptr && name != setting.alternates.end(); ++name) {
        value = map.query_ptr(*name);
    }
    return value;
}

} // namespace vxattribute::impl
