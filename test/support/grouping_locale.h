#pragma once

#include <locale>
#include <string>

namespace vxtest {

/// Groups digits by three and has a decimal comma.
struct Grouping : std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }

    char do_decimal_point() const override { return ','; }

    std::string do_grouping() const override { return "\3"; }
};

inline std::locale grouping_locale() {
    return std::locale(std::locale::classic(), new Grouping);
}

} // namespace vxtest
