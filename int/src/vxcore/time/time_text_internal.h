#pragma once

#include <string>
#include <string_view>

/// Reading and writing ISO 8601, shared by the three time types and independent of any locale.
namespace vxcore::impl {

/// Reads a text from front to back. When a function other than `take` returns false, drop the
/// scanner: its position and the output are unspecified.
class TextScanner {
  public:
    explicit TextScanner(std::string_view text) noexcept : m_rest(text) {}

    bool at_end() const noexcept { return m_rest.empty(); }

    /// Consumes `c` if it is the next character.
    bool take(char c) noexcept;

    /// Reads one decimal digit.
    bool take_digit(unsigned int & value) noexcept;

    /// Reads exactly `count` digits, at most nine.
    bool take_digits(unsigned int count, unsigned int & value) noexcept;

    /// Reads all digits that follow, at least one. Returns false if the number exceeds 64 bits.
    bool take_number(unsigned long long & value) noexcept;

    /// Reads the one to seven digits after a decimal point, as ticks within the second.
    bool take_fraction(unsigned int & ticks) noexcept;

  private:
    std::string_view m_rest;
};

/// Reads a date such as 2026-11-24. A year above 9999 needs a "+"; one below 0 has a "-".
bool scan_date(TextScanner & scanner, long long & day) noexcept;

/// Reads a time of day such as 14:46:20 or 14:46:20.5.
bool scan_clock(TextScanner & scanner, long long & ticks) noexcept;

/// Appends the point and the digits of a fraction without trailing zeros; nothing for 0.
void append_fraction(std::string & text, unsigned int ticks);

/// Appends a moment such as 2026-11-24T14:46:20.5.
void append_date_time(std::string & text, long long ticks);

} // namespace vxcore::impl
