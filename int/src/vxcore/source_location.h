#pragma once

#include "vxcore/source_string.h"

namespace vxcore {

/// Where a failure was raised: the qualified name of the operation, file and line.
class SourceLocation {
  public:
    SourceLocation() = default;

    /// Both texts must live as long as the program, as literals do.
    SourceLocation(char const * function, char const * file, unsigned int line)
        : m_function(function, true), m_file(file, true), m_line(line) {}

    SourceLocation(SourceString function, SourceString file, unsigned int line) noexcept
        : m_function(std::move(function)), m_file(std::move(file)), m_line(line) {}

    SourceString const & function() const noexcept VXCORE_LIFETIMEBOUND { return m_function; }

    SourceString const & file() const noexcept VXCORE_LIFETIMEBOUND { return m_file; }

    unsigned int line() const noexcept { return m_line; }

  private:
    SourceString m_function;
    SourceString m_file;
    unsigned int m_line = 0;
};

} // namespace vxcore

/// The location of this line, under the name `function` (a literal).
#define VXCORE_LOCATION(function) ::vxcore::SourceLocation(function, __FILE__, __LINE__)
