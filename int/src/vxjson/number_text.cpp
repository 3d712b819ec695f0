#include "vxjson/number_text_internal.h"

#include <algorithm>
#include <charconv>

namespace vxjson::impl {

DoubleText::DoubleText(double value, int minExponent, int maxExponent) noexcept {
    char buffer[32]; // -d.dddddddddddddddde-ddd
    char * const end =
        std::to_chars(buffer, buffer + sizeof(buffer), value, std::chars_format::scientific).ptr;
    std::string_view const text(buffer, static_cast<std::size_t>(end - buffer));
    std::size_t const mark = text.find('e');
    int exponent = 0;
    // from_chars takes no plus.
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
