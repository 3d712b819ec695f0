#pragma once

#include "vxcore/error_info.h"

#include <exception>

namespace vxcore {

/// The exception that carries an ErrorInfo. Copying it cannot fail.
class VXCORE_API ErrorException : public std::exception {
  public:
    /// @param info  Not null.
    explicit ErrorException(ErrorInfo::Ptr info) noexcept;
    ErrorException(ErrorException const &) noexcept = default;
    ErrorException & operator=(ErrorException const &) noexcept = default;
    ~ErrorException() override;

    /// Raises the info; a null one raises `std::invalid_argument`.
    [[noreturn]] static void throw_error(ErrorInfo::Ptr info);

    /// Never null.
    ErrorInfo::Ptr const & info() const noexcept VXCORE_LIFETIMEBOUND { return m_info; }

    /// The filled message of the info.
    char const * what() const noexcept override;

  private:
    ErrorInfo::Ptr m_info;
};

/// Raises a failure without parameters.
[[noreturn]] VXCORE_API void throw_error(ErrorCode const & code, SourceString message,
                                         SourceLocation location);

/// As `ErrorException::throw_error`.
[[noreturn]] VXCORE_API void throw_error(ErrorInfo::Ptr info);

/// Raises a failure whose nested info is that of `e`.
[[noreturn]] VXCORE_API void throw_with_nested_exception(ErrorCode const & code,
                                                         SourceString message,
                                                         SourceLocation location,
                                                         std::exception const & e);

} // namespace vxcore
