#include "vxattribute/trace_level.h"

#include "vxattribute/error_codes.h"
#include "vxcore/error_exception.h"
#include "vxcore/text_conversion.h"

#include <string_view>

namespace vxattribute {

namespace {

struct NamedLevel {
    std::string_view name;
    signed char level;
};

constexpr NamedLevel namedLevels[] = {
    {"NEVER", -1}, {"STATUS", 41}, {"NOTE", 61}, {"VERBOSE", 81}, {"ALWAYS", 100},
};

constexpr signed char minLevel = -1;
constexpr signed char maxLevel = 100;

} // namespace

bool TraceLevel::assign_from_name(std::string const & name) noexcept {
    for (NamedLevel const & known : namedLevels) {
        if (vxcore::string_equal_nocase_ascii(name.data(), static_cast<unsigned int>(name.size()),
                                              known.name.data(),
                                              static_cast<unsigned int>(known.name.size()))) {
            *m_target = static_cast<char>(known.level);
            return true;
        }
    }
    return false;
}

bool TraceLevel::operator()(Query::MatchContext const & context) {
    AttributeValue const & value = context.attribute_value();
    if (value.size() > 1) {
        vxcore::throw_error(
            error::vxattribute_query,
            vxcore::SourceString("Multi-valued trace level attributes are NOT currently supported.",
                                 true),
            VXCORE_LOCATION("vxattribute::TraceLevel::operator()()"));
    }
    if (value.type() == ValueTypeId::typeString && assign_from_name(value.get<std::string>())) {
        return true;
    }
    // A plain char is unsigned on some platforms, where -1 would be 255.
    auto const level = static_cast<signed char>(context.value().convert_to<char>());
    *m_target = static_cast<char>(level);
    return level >= minLevel && level <= maxLevel;
}

} // namespace vxattribute
