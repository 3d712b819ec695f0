#pragma once

#include "vxattribute/query.h"

namespace vxattribute {

/// The matcher for a trace level: a number from -1 to 100, also as text, or one of the names NEVER
/// (-1), STATUS (41), NOTE (61), VERBOSE (81) and ALWAYS (100), in upper or lower case.
///
///     char level = 41;
///     static Query const query = Query("trace_level").scalar(true);
///     query.execute(config, TraceLevel(level), nullptr);
class VXATTRIBUTE_API TraceLevel {
  public:
    /// @param target  Receives the level as a signed 8-bit number, -1 as the byte 255; must outlive
    ///                this object.
    explicit TraceLevel(char & target VXCORE_LIFETIMEBOUND) noexcept : m_target(&target) {}

    /// Reads the level. A number outside the range is stored too.
    ///
    /// @return Whether the level is in the range.
    /// @raises error.vxattribute.query: several elements.
    /// @raises As ConvertableValue for a `char`: neither a name nor a number from -128 to 127.
    bool operator()(Query::MatchContext const & context);

  private:
    bool assign_from_name(std::string const & name) noexcept;

    char * m_target;
};

} // namespace vxattribute
