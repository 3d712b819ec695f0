#include "vxattribute/query/number_text_internal.h"
#include "vxcore/text_conversion.h"
#include "vxcore/type_name.h"

#include <charconv>
#include <string_view>

namespace vxattribute::impl {

namespace {

template <typename T>
[[noreturn]] void fail(std::string_view text) {
    vxcore::impl::string_to_failure(text.data(), static_cast<unsigned int>(text.size()),
                                    vxcore::type_name(typeid(T)).c_str(), nullptr);
    __builtin_unreachable(); // with a null error argument the call above raises
}

/// An overflow is detected by a number that becomes smaller. Overflows that this misses still leave
/// numbers far out of the range that the only caller accepts.
unsigned long long parse_digits(std::string_view digits) {
    unsigned long long number = 0;
    for (char const c : digits) {
        unsigned long long const next = number * 10 + static_cast<unsigned long long>(c - '0');
        if (c < '0' || c > '9' || next < number) {
            fail<unsigned long long>(digits);
        }
        number = next;
    }
    return number;
}

} // namespace

signed char parse_signed_char(std::string const & text) {
    std::string_view digits = text;
    bool const isNegative = digits.starts_with('-');
    if (isNegative || digits.starts_with('+')) {
        digits.remove_prefix(1);
    }
    if (digits.empty()) {
        fail<char>(text);
    }
    unsigned long long const number = parse_digits(digits);
    if (number > (isNegative ? 128u : 127u)) {
        fail<char>(text);
    }
    return static_cast<signed char>(isNegative ? -static_cast<int>(number)
                                               : static_cast<int>(number));
}

template <typename T>
T parse_integer(std::string const & text) {
    char const * first = text.data();
    char const * const last = first + text.size();
    // `from_chars` accepts no plus sign. "+-5" must stay invalid.
    if (text.starts_with('+') && !text.starts_with("+-")) {
        ++first;
    }
    T number{};
    auto const [end, error] = std::from_chars(first, last, number);
    if (error != std::errc() || end != last) {
        fail<T>(text);
    }
    return number;
}

template signed char parse_integer(std::string const &);
template unsigned char parse_integer(std::string const &);
template short parse_integer(std::string const &);
template unsigned short parse_integer(std::string const &);
template int parse_integer(std::string const &);
template unsigned int parse_integer(std::string const &);
template long parse_integer(std::string const &);
template unsigned long parse_integer(std::string const &);
template long long parse_integer(std::string const &);
template unsigned long long parse_integer(std::string const &);

} // namespace vxattribute::impl
