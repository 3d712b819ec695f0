#include "vxcore/text_conversion.h"

#include "vxcore/default_floating_point.h"
#include "vxcore/error_codes.h"
#include "vxcore/error_composer.h"
#include "vxcore/streamers.h"

#include <charconv>
#include <cmath>
#include <new>

namespace vxcore {

namespace {

template <typename Integer>
std::string integer_text(Integer value) {
    char buffer[24]; // 20 bytes hold any 64-bit number with its sign
    char * const end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    return std::string(buffer, end);
}

/// Storage for a string that is never destroyed: other libraries may still use the reference.
union EmptyStringStorage {
    constexpr EmptyStringStorage() noexcept : nothing{} {}

    ~EmptyStringStorage() {}

    char nothing;
    std::string text;
};

constinit EmptyStringStorage g_emptyStringStorage;

struct EmptyStringMaker {
    EmptyStringMaker() noexcept { ::new (&g_emptyStringStorage.text) std::string; }
};

/// Runs before all other static initialisers of this library. Libraries that use this one are
/// loaded later, so that theirs find the string too.
[[gnu::init_priority(101)]] EmptyStringMaker const g_emptyStringMaker;

constexpr unsigned char lower_ascii(char c) noexcept {
    return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

} // namespace

std::string to_string(int value) {
    return integer_text(value);
}

std::string to_string(unsigned int value) {
    return integer_text(value);
}

std::string to_string(unsigned short value) {
    return integer_text(value);
}

std::string to_string(long long value) {
    return integer_text(value);
}

std::string to_string(unsigned long long value) {
    return integer_text(value);
}

int compare_nocase_ascii(char const * a, unsigned int aSize, char const * b,
                         unsigned int bSize) noexcept {
    for (unsigned int i = 0; i < aSize && i < bSize; ++i) {
        unsigned char const x = lower_ascii(a[i]);
        unsigned char const y = lower_ascii(b[i]);
        if (x != y) {
            return x < y ? -1 : 1;
        }
    }
    return aSize == bSize ? 0 : aSize < bSize ? -1 : 1;
}

bool string_equal_nocase_ascii(char const * a, unsigned int aSize, char const * b,
                               unsigned int bSize) noexcept {
    return aSize == bSize && compare_nocase_ascii(a, aSize, b, bSize) == 0;
}

constinit std::string const & g_emptyString = g_emptyStringStorage.text;

namespace impl {

namespace {

/// Distinguishes underflow (true) from overflow (false), which `from_chars` reports alike. `text`
/// is a decimal number out of the range of a double, without a leading plus.
///
/// Digits before the point raise the scale, from the first significant one on. Zeros between the
/// point and the first significant digit lower it.
bool is_too_small(std::string_view text) noexcept {
    constexpr long long enough = 1'000'000'000'000; // larger than `scale` can be: no overflow
    long long scale = 0;                            // the number is 0.d... * 10^scale, d not 0
    bool significant = false;
    bool point = false;
    std::size_t at = text.front() == '-' ? 1 : 0;
    for (; at < text.size() && text[at] != 'e' && text[at] != 'E'; ++at) {
        if (text[at] == '.') {
            point = true;
            continue;
        }
        significant = significant || text[at] != '0';
        if (significant != point) {
            scale += significant ? 1 : -1;
        }
    }
    if (at == text.size()) {
        return scale < 0;
    }
    ++at;
    bool const negative = text[at] == '-';
    at += negative || text[at] == '+' ? 1 : 0;
    long long exponent = 0;
    for (; at < text.size() && exponent < enough; ++at) {
        exponent = exponent * 10 + (text[at] - '0');
    }
    return scale + (negative ? -exponent : exponent) < 0;
}

bool scan_double(std::string_view text, double & value) noexcept {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return false;
        }
    }
    if (text.empty()) {
        return false;
    }
    char const * const last = text.data() + text.size();
    DefaultFloatingPoint const environment;
    auto const [end, error] = std::from_chars(text.data(), last, value);
    // A closing parenthesis can only end the form nan(...), which is not accepted.
    if (end != last || text.back() == ')') {
        return false;
    }
    if (error == std::errc::result_out_of_range && is_too_small(text)) {
        value = text.front() == '-' ? -0.0 : 0.0;
        return true;
    }
    return error == std::errc();
}

} // namespace

bool string_to_bool(char const * data, unsigned int size, ErrorInfo::Ptr * error) {
    struct Name {
        std::string_view text;
        bool value;
    };

    static constexpr Name names[] = {{"true", true}, {"false", false}, {"yes", true}, {"no", false},
                                     {"on", true},   {"off", false},   {"1", true},   {"0", false}};
    for (Name const & name : names) {
        if (string_equal_nocase_ascii(data, size, name.text.data(),
                                      static_cast<unsigned int>(name.text.size()))) {
            return name.value;
        }
    }
    string_to_failure(data, size, "bool", error);
    return false;
}

double string_to_double(char const * data, unsigned int size, ErrorInfo::Ptr * error) {
    double value = 0;
    if (!scan_double({data, size}, value)) {
        string_to_failure(data, size, "double", error);
        return 0;
    }
    return value;
}

void string_to_failure(char const * data, unsigned int size, char const * type,
                       ErrorInfo::Ptr * error) {
    // The text is input of any size, so the message shows only its start.
    std::string_view const text(data, size);
    ErrorComposer("Cannot convert '{@text}' to {@type}")
        .param("text", std::string(text.substr(0, utf8_cut(text, 256))))
        .param("type", type)
        .create_transfer(error, error::vxcore_conversion,
                         VXCORE_LOCATION("vxcore::impl::string_to_failure()"));
}

void safe_cast_throw_value_truncated(char const * type, std::string value) {
    ErrorComposer("Value {@value} does not fit into {@type}")
        .param("value", std::move(value))
        .param("type", type)
        .throw_error(error::vxcore_conversion_truncated,
                     VXCORE_LOCATION("vxcore::impl::safe_cast_throw_value_truncated()"));
}

} // namespace impl
} // namespace vxcore
