#pragma once

#include "vxcore/error_exception.h"

namespace vxcore {

/// Builds a failure step by step: a message with placeholders, its parameters, then the raise.
///
///     ErrorComposer("Unknown id {@id}")
///         .param("id", to_string(id))
///         .throw_error(error::unknown, VXCORE_LOCATION("vxattribute::find()"));
class VXCORE_API ErrorComposer {
  public:
    /// @param message  A literal: its address is kept.
    explicit ErrorComposer(char const * message) : m_message(message, true) {}

    explicit ErrorComposer(SourceString message) noexcept : m_message(std::move(message)) {}

    ErrorParams & params() noexcept VXCORE_LIFETIMEBOUND { return m_params; }

    /// Sets one parameter. `name` is a literal.
    ErrorComposer & param(char const * name, std::string value) VXCORE_LIFETIMEBOUND;

    /// Builds the info and raises it as an ErrorException.
    [[noreturn]] void throw_error(ErrorCode const & code, SourceLocation location);

    /// Builds the info without raising it. This function, `throw_error` and `create_transfer` move
    /// message and parameters out of the composer: call one of them, once.
    [[nodiscard]] ErrorInfo::Ptr create(ErrorCode const & code, SourceLocation location,
                                        ErrorInfo::Ptr nested = nullptr);

    /// Stores the info in `*out`, or raises it when `out` is null.
    void create_transfer(ErrorInfo::Ptr * out, ErrorCode const & code, SourceLocation location);

  private:
    SourceString m_message;
    ErrorParams m_params;
};

} // namespace vxcore
