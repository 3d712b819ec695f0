#pragma once

#include "vxattribute/attribute_value.h"

#include <bit>
#include <cstdint>

/// Values of single JSON elements, for all code that reads JSON.
namespace vxattribute::impl {

/// True when the double is whole and fits 64 bits, however it was written. The range is checked
/// first, because a cast from outside it is undefined; this excludes NaN and the infinities. Bits
/// are compared because 5e-324 equals 0 in a thread that treats subnormal numbers as zero. The sign
/// is ignored, since -0.0 is an integer.
inline bool is_integer(double number) noexcept {
    if (!(number >= -0x1p63 && number < 0x1p63)) {
        return false;
    }
    auto const whole = static_cast<double>(static_cast<long long>(number));
    return (std::bit_cast<std::uint64_t>(whole) ^ std::bit_cast<std::uint64_t>(number)) << 1 == 0;
}

/// Replaces the representation of `value`, which adopts the new one.
inline void set_value(AttributeValue & value, ValueBase * representation) noexcept {
    ValueHolder holder(representation);
    value.swap_impl(holder);
}

} // namespace vxattribute::impl
