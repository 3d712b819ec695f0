#pragma once

#include "vxcore/error_info.h"

#include <string_view>

namespace vxjson::impl {

/// The double that the text of a number token stands for.
///
/// @param error  Takes the failure; null raises it.
/// @raises error.vxcore.conversion: beyond the range of a double, or no number.
double read_number(std::string_view text, vxcore::ErrorInfo::Ptr * error);

/// The fewest digits that read back as one double, laid out without an exponent where the decimal
/// exponent lies in a range that holds 0, and with ".0" where no fraction would show.
class DoubleText {
  public:
    /// @param value  Finite.
    DoubleText(double value, int minExponent, int maxExponent) noexcept;

    std::string_view view() const noexcept { return {m_text, m_size}; }

  private:
    void put(std::string_view text) noexcept;
    void put_zeros(int count) noexcept;

    unsigned int m_size = 0;
    char m_text[352]; // a sign, 17 digits, a point, and as many zeros as exponents allow
};

} // namespace vxjson::impl
