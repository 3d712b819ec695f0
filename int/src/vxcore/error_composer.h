#pragma once

#include "vxcore/error_exception.h"

namespace vxcore {

/// Builds a failure step by step: a message with placeholders, its parameters, then the raise.
///
/// Values go into parameters rather than into the message, so that a program that handles the
/// failure can read them. A composer is used once. Every function but the constructors and
/// `params()` may raise `std::bad_alloc`.
///
///     ErrorComposer("Unknown id {@id}")
///         .param("id", to_string(id))
///         .throw_error(error::unknown, VXCORE_LOCATION("vxattribute::find()"));
class VXCORE_API ErrorComposer {
  public:
    /// @param message  A literal: its address is kept.
    explicit ErrorComposer(char const * message) : m_message(message, true) {}

    /// @param message  With `{@name}` where the parameter `name` belongs.
    explicit ErrorComposer(SourceString message) noexcept : m_message(std::move(message)) {}

    /// The parameters so far, for names that are no literals.
    ErrorParams & params() noexcept VXCORE_LIFETIMEBOUND { return m_params; }

    /// Sets one parameter and returns this composer; a second value for a name replaces the first.
    ///
    /// @param name  A literal: its address is kept.
    ErrorComposer & param(char const * name, std::string value) VXCORE_LIFETIMEBOUND;

    /// Builds the info and raises it as an ErrorException. It has no nested info; to nest one, call
    /// `create` and `vxcore::throw_error`.
    [[noreturn]] void throw_error(ErrorCode const & code, SourceLocation location);

    /// Builds the info without raising it. This function, `throw_error` and `create_transfer` move
    /// message and parameters out of the composer: call one of them, once.
    [[nodiscard]] ErrorInfo::Ptr create(ErrorCode const & code, SourceLocation location,
                                        ErrorInfo::Ptr nested = nullptr);

    /// Stores the info in `*out`, or raises it when `out` is null: for functions whose callers
    /// choose between the two.
    void create_transfer(ErrorInfo::Ptr * out, ErrorCode const & code, SourceLocation location);

  private:
    SourceString m_message;
    ErrorParams m_params;
};

} // namespace vxcore
