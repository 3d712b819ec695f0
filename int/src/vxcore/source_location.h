#pragma once

#include "vxcore/source_string.h"

namespace vxcore {

/// The place in the source where a failure was raised.
///
/// Part of every ErrorInfo, for people who read traces. Failures are compared without it. A default
/// location names no place: `ErrorInfo::write_trace` then writes no line for it.
///
/// Cost. A location of literals takes no memory beside the object. A copy is at most two reference
/// counts and does not throw.
///
///     throw_error(error::unknown, SourceString("No such id", true),
///                 VXCORE_LOCATION("vxattribute::find()"));
class SourceLocation {
  public:
    /// No place: both texts empty, line 0.
    SourceLocation() = default;

    /// Holds the addresses of both texts, which must live as long as the program, as literals do.
    SourceLocation(char const * function, char const * file, unsigned int line)
        : m_function(function, true), m_file(file, true), m_line(line) {}

    /// Takes over texts of any origin, such as those of a location that came in a stream.
    SourceLocation(SourceString function, SourceString file, unsigned int line) noexcept
        : m_function(std::move(function)), m_file(std::move(file)), m_line(line) {}

    /// The qualified name of the operation, such as "vxattribute::find()".
    SourceString const & function() const noexcept VXCORE_LIFETIMEBOUND { return m_function; }

    /// The name of the source file as the compiler knows it; it may contain a path.
    SourceString const & file() const noexcept VXCORE_LIFETIMEBOUND { return m_file; }

    /// Counts from 1; 0 if unknown.
    unsigned int line() const noexcept { return m_line; }

  private:
    SourceString m_function;
    SourceString m_file;
    unsigned int m_line = 0;
};

} // namespace vxcore

/// The location of this line, under the name `function` (a literal).
#define VXCORE_LOCATION(function) ::vxcore::SourceLocation(function, __FILE__, __LINE__)
