#pragma once

// Included by the readers of JSON, here and in vxattribute; not for direct use.

#include "vxjson/lexis_impl.h"

#include <algorithm>
#include <cfloat>
#include <cstdint>

namespace vxjson::impl {

/// A number in a text. Its magnitude is digits * 10^exponent, if `digitCount` is at most
/// `exact_digits`: the digits of longer numbers wrap.
struct NumberScan {
    static constexpr std::ptrdiff_t exact_digits = 19;

    char const * end;                ///< of the number, or the byte that breaks the grammar
    char const * expected = nullptr; ///< what is missing at `end`; null for a valid number
    std::uint64_t digits = 0;        ///< those before and after the point as one integer
    std::ptrdiff_t digitCount = 0;   ///< with leading zeros
    std::ptrdiff_t exponent = 0;     ///< less the digits after the point; limited to about 10^6
    bool isNegative = false;
};

/// Where a scan of digits ends. Code whose text ends with a bracket needs no test for the end.
struct TextLimit {
    char const * limit;

    constexpr bool is_before(char const * at) const noexcept { return at != limit; }
};

struct NoTextLimit {
    constexpr bool is_before(char const *) const noexcept { return true; }
};

/// Appends the digits at `scan.end` to those of the number. False if there is none.
template <typename Limit>
constexpr bool scan_digits(NumberScan & scan, Limit limit) noexcept {
    char const * const start = scan.end;
    for (; limit.is_before(scan.end); ++scan.end) {
        auto const digit = static_cast<unsigned char>(*scan.end - '0');
        if (digit > 9) {
            break;
        }
        scan.digits = scan.digits * 10 + digit;
    }
    scan.digitCount += scan.end - start;
    return scan.end != start;
}

/// Reads the exponent after its letter, and adds it to that of the number. False without digits.
template <typename Limit>
constexpr bool scan_exponent(NumberScan & scan, Limit limit) noexcept {
    constexpr std::ptrdiff_t enough = 1'000'000;
    bool isNegative = false;
    if (limit.is_before(scan.end) && (*scan.end == '+' || *scan.end == '-')) {
        isNegative = *scan.end == '-';
        ++scan.end;
    }
    char const * const start = scan.end;
    std::ptrdiff_t exponent = 0;
    for (; limit.is_before(scan.end) && is_byte(*scan.end, eByte_Digit); ++scan.end) {
        exponent = std::min(exponent * 10 + (*scan.end - '0'), enough);
    }
    scan.exponent += isNegative ? -exponent : exponent;
    return scan.end != start;
}

/// Scans the number at `at` by the grammar of RFC 8259, section 6. The caller checks what follows.
///
/// @param limit  TextLimit, or NoTextLimit if a byte that ends every number is certain to follow.
template <typename Limit>
constexpr NumberScan scan_number(char const * at, Limit limit) noexcept {
    NumberScan scan{at};
    if (limit.is_before(scan.end) && *scan.end == '-') {
        scan.isNegative = true;
        ++scan.end;
    }
    bool isValid = true;
    if (limit.is_before(scan.end) && *scan.end == '0') {
        ++scan.end; // no digit may follow
        scan.digitCount = 1;
    } else {
        isValid = scan_digits(scan, limit);
    }
    if (isValid && limit.is_before(scan.end) && *scan.end == '.') {
        char const * const fraction = ++scan.end;
        isValid = scan_digits(scan, limit);
        scan.exponent = fraction - scan.end;
    }
    if (isValid && limit.is_before(scan.end) && (*scan.end == 'e' || *scan.end == 'E')) {
        ++scan.end;
        isValid = scan_exponent(scan, limit);
    }
    scan.expected = isValid ? nullptr : "a digit";
    return scan;
}

constexpr NumberScan scan_number(char const * at, char const * limit) noexcept {
    return scan_number(at, TextLimit{limit});
}

/// Powers of ten that a double represents exactly.
inline constexpr double exact_powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                          1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                          1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// Makes the nearest double of a valid number where one operation on exact operands does that:
/// short decimal fractions, and integers of up to 19 digits. The source is William D. Clinger, "How
/// to read floating point numbers accurately" (1990). False for all other numbers.
///
/// @pre  The thread is in the default floating-point environment, or the number is an integer of
///       at most 15 digits.
/// Always inline: a call would need the scan in memory, and loading it again right after it was
/// stored takes longer than the conversion.
[[gnu::always_inline]] constexpr bool exact_double(NumberScan const & scan,
                                                   double & value) noexcept {
    constexpr std::uint64_t exactIntegers = std::uint64_t(1) << DBL_MANT_DIG;
    if (scan.digitCount > NumberScan::exact_digits) {
        return false;
    }
    double magnitude = 0;
    if (scan.exponent == 0) {
        magnitude = static_cast<double>(scan.digits);
    } else if (FLT_EVAL_METHOD == 0 && scan.digits <= exactIntegers && scan.exponent >= -22 &&
               scan.exponent <= 22) {
        // Wider registers would round twice.
        magnitude = static_cast<double>(static_cast<std::int64_t>(scan.digits));
        magnitude = scan.exponent < 0 ? magnitude / exact_powers[-scan.exponent]
                                      : magnitude * exact_powers[scan.exponent];
    } else {
        return false;
    }
    value = scan.isNegative ? -magnitude : magnitude; // -0 keeps its sign
    return true;
}

} // namespace vxjson::impl
