#pragma once

#include "vxcore/error_info.h"

#include <string_view>

namespace vxjson::impl {

/// Converts the text of a number token to the nearest double.
///
/// @param error  Receives the failure; if null, the failure is raised.
/// @raises error.vxcore.conversion: beyond the range of a double, or no number.
double read_number(std::string_view text, vxcore::ErrorInfo::Ptr * error);

/// The text of a double: the fewest digits that read back as the same double. There is no exponent
/// if the decimal exponent is within the given limits, and ".0" marks whole numbers then.
class DoubleText {
  public:
    /// @param value        Finite.
    /// @param minExponent  -324 to 0.
    /// @param maxExponent  0 to 308.
    DoubleText(double value, int minExponent, int maxExponent) noexcept;

    std::string_view view() const noexcept { return {m_text, m_size}; }

  private:
    void put(std::string_view text) noexcept;
    void put_zeros(int count) noexcept;

    unsigned int m_size = 0;
    char m_text[352]; // sign, 17 digits, point, and the zeros that the exponent limits allow
};

} // namespace vxjson::impl
