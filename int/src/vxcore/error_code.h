#pragma once

#include <string_view>

namespace vxcore {

/// A kind of failure, named by a dotted text such as "error.vxcore.conversion".
///
/// One pointer wide and constant-initialised: a code may be used before any static initialiser has
/// run and while libraries unload. The dots make a tree; see `ErrorInfo::matches`.
class ErrorCode {
  public:
    /// Holds the address of `name`, which must outlive every use of the code, as a literal does.
    /// The second argument is always `true`, as a reminder at the call site.
    constexpr ErrorCode(char const * name, bool /*isStatic*/) noexcept : m_name(name) {}

    constexpr char const * name() const noexcept { return m_name; }

    constexpr std::string_view view() const noexcept { return m_name; }

    /// True if this code is `ancestor` or below it, component by component.
    constexpr bool is_within(ErrorCode const & ancestor) const noexcept {
        std::string_view const own = view();
        std::string_view const other = ancestor.view();
        return own.substr(0, other.size()) == other &&
               (own.size() == other.size() || own[other.size()] == '.');
    }

    friend constexpr bool operator==(ErrorCode const & a, ErrorCode const & b) noexcept {
        return a.view() == b.view();
    }

    friend constexpr bool operator<(ErrorCode const & a, ErrorCode const & b) noexcept {
        return a.view() < b.view();
    }

  private:
    char const * m_name;
};

} // namespace vxcore
