#include "vxcore/default_floating_point.h"
#include "vxcore/text_conversion.h"
#include "vxcore/text_size.h"
#include "vxjson/number_scan_impl.h"
#include "vxjson/number_text_internal.h"

#include <algorithm>
#include <charconv>

namespace vxjson::impl {

double read_number(std::string_view text, vxcore::ErrorInfo::Ptr * error) {
    char const * const end = text.data() + text.size();
    NumberScan const scan = scan_number(text.data(), end);
    // Tokenizers of callers may return any text as a number.
    if (scan.expected == nullptr && scan.end == end) {
        vxcore::impl::DefaultFloatingPoint const environment;
        if (double value = 0; exact_double(scan, value)) {
            return value;
        }
    }
    return vxcore::impl::string_to_double(text.data(), vxcore::text_size(text.size()), error);
}

DoubleText::DoubleText(double value, int minExponent, int maxExponent) noexcept {
    vxcore::impl::DefaultFloatingPoint const environment;
    // The scientific form has the fewest digits that read back as the same double. The plain form
    // is made of the same digits.
    char buffer[32]; // -d.dddddddddddddddde-ddd
    char * const end =
        std::to_chars(buffer, buffer + sizeof(buffer), value, std::chars_format::scientific).ptr;
    std::string_view const text(buffer, static_cast<std::size_t>(end - buffer));
    std::size_t const mark = text.find('e');
    int exponent = 0;
    // from_chars accepts no plus sign.
    std::from_chars(buffer + mark + (text[mark + 1] == '+' ? 2 : 1), end, exponent);
    if (exponent < minExponent || exponent > maxExponent) {
        put(text);
        return;
    }
    bool const negative = text.front() == '-';
    char digits[17];
    char * const last = std::remove_copy(buffer + (negative ? 1 : 0), buffer + mark, digits, '.');
    std::string_view const all(digits, static_cast<std::size_t>(last - digits));
    put(negative ? "-" : "");
    if (exponent < 0) {
        put("0.");
        put_zeros(-exponent - 1);
        put(all);
        return;
    }
    auto const whole = static_cast<std::size_t>(exponent) + 1;
    put(all.substr(0, whole));
    if (all.size() > whole) {
        put(".");
        put(all.substr(whole));
    } else {
        put_zeros(static_cast<int>(whole - all.size()));
        put(".0");
    }
}

void DoubleText::put(std::string_view text) noexcept {
    m_size += static_cast<unsigned int>(text.copy(m_text + m_size, text.size()));
}

void DoubleText::put_zeros(int count) noexcept {
    std::fill_n(m_text + m_size, count, '0');
    m_size += static_cast<unsigned int>(count);
}

} // namespace vxjson::impl
