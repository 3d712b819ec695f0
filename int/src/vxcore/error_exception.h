#pragma once

#include "vxcore/error_info.h"

#include <exception>

namespace vxcore {

/// The exception that carries an ErrorInfo: what all libraries here raise for failures that have an
/// error code.
///
/// Cost. One pointer, and one reference count per copy. Copying cannot fail.
///
/// Threads. The info is immutable: exceptions may be copied to other threads and read there.
///
///     try {
///         reader.read_uint();
///     } catch (ErrorException const & e) {
///         if (e.info()->matches(vxserialize::error::vxserialize_data)) { ... }
///     }
class VXCORE_API ErrorException : public std::exception {
  public:
    /// @param info  Not null: `what()` reads it. Raise with `throw_error`, which checks that.
    explicit ErrorException(ErrorInfo::Ptr info) noexcept;
    ErrorException(ErrorException const &) noexcept = default;
    ErrorException & operator=(ErrorException const &) noexcept = default;
    ~ErrorException() override;

    /// Raises the info; a null one raises `std::invalid_argument`.
    [[noreturn]] static void throw_error(ErrorInfo::Ptr info);

    /// The failure; never null. A copy of the pointer keeps it beyond the exception.
    ErrorInfo::Ptr const & info() const noexcept VXCORE_LIFETIMEBOUND { return m_info; }

    /// The filled message of the info: `info()->text()`. It is valid as long as the info.
    char const * what() const noexcept override;

  private:
    ErrorInfo::Ptr m_info;
};

/// Raises a failure without parameters as an ErrorException. For parameters see ErrorComposer.
///
/// @param code  Its name must outlive the failure, as that of a constant does.
/// @raises std::bad_alloc: no memory for the info, here and in `throw_with_nested_exception`.
[[noreturn]] VXCORE_API void throw_error(ErrorCode const & code, SourceString message,
                                         SourceLocation location);

/// As `ErrorException::throw_error`.
[[noreturn]] VXCORE_API void throw_error(ErrorInfo::Ptr info);

/// Raises a failure that `e` caused. Its nested info is `ErrorInfo::from_exception(e, location)`,
/// so a foreign exception is reported with its text.
[[noreturn]] VXCORE_API void throw_with_nested_exception(ErrorCode const & code,
                                                         SourceString message,
                                                         SourceLocation location,
                                                         std::exception const & e);

} // namespace vxcore
