#pragma once

#include "vxattribute/query.h"

namespace vxattribute {

/// The matcher for a trace level: a number from -1 to 100, or one of the names NEVER (-1), STATUS
/// (41), NOTE (61), VERBOSE (81) and ALWAYS (100) in any case. A number may stand in a String.
///
///     char level = 41;
///     static Query const query = Query("trace_level").scalar(true);
///     query.execute(config, TraceLevel(level), nullptr);
class VXATTRIBUTE_API TraceLevel {
  public:
    /// @param target  Receives the level as a signed 8-bit number, -1 as the byte 255; must outlive
    ///                this object.
    explicit TraceLevel(char & target VXCORE_LIFETIMEBOUND) noexcept : m_target(&target) {}

    /// Reads the level. A number is stored also when it is no level.
    ///
    /// @return whether the number is a level.
    /// @raises error.vxattribute.query: several values.
    /// @raises As ConvertableValue of a `char`: neither a name nor such a number.
    bool operator()(Query::MatchContext const & context);

  private:
    bool assign_from_name(std::string const & name) noexcept;

    char * m_target;
};

} // namespace vxattribute
