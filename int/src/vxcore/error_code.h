#pragma once

#include <string_view>

namespace vxcore {

/// A kind of failure, named by a dotted text such as "error.vxcore.conversion".
///
/// The dots make a tree: "error.vxcore.conversion.truncated" is a special case of
/// "error.vxcore.conversion". A program handles a whole branch with `is_within` or
/// `ErrorInfo::matches`.
///
/// One pointer wide and constant-initialised: a code may be used before any static initialiser has
/// run and while libraries unload. Comparing reads the names: O(length). No function throws.
///
///     constinit ErrorCode const unknown("error.shop.unknown", true);
///     if (e.info()->matches(unknown)) { ... }
class ErrorCode {
  public:
    /// Holds the address of `name`, which must outlive every use of the code, as a literal does.
    /// The second argument is always `true`, as a reminder at the call site.
    constexpr ErrorCode(char const * name, bool /*isStatic*/) noexcept : m_name(name) {}

    /// The dotted text, as given, and with its terminator.
    constexpr char const * name() const noexcept { return m_name; }

    /// The same as a view. O(length): the length is not stored.
    constexpr std::string_view view() const noexcept { return m_name; }

    /// True if this code is `ancestor` or below it, component by component: "error.vx" is no
    /// ancestor of "error.vxcore".
    constexpr bool is_within(ErrorCode const & ancestor) const noexcept {
        std::string_view const own = view();
        std::string_view const other = ancestor.view();
        return own.substr(0, other.size()) == other &&
               (own.size() == other.size() || own[other.size()] == '.');
    }

    /// Both compare the names by bytes, so two codes of the same name are equal wherever the name
    /// is stored.
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
