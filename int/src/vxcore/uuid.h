#pragma once

#include "vxcore/export.h"

#include <array>
#include <compare>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>

namespace vxcore {

/// A universally unique identifier: 16 bytes in the order of its text (RFC 4122). Default: all
/// zero.
class VXCORE_API Uuid {
  public:
    using BinaryData = std::array<unsigned char, 16>;

    constexpr Uuid() noexcept : m_data{} {}

    constexpr explicit Uuid(BinaryData const & data) noexcept : m_data(data) {}

    /// Reads a text of either form of `as_string`, digits in either case.
    ///
    /// @return false when `text` is none; `uuid` is unchanged then.
    static bool parse(std::string_view text, Uuid & uuid) noexcept;

    constexpr BinaryData const & data() const noexcept { return m_data; }

    /// @param format  0: 8-4-4-4-12 lower case digits with dashes; 1: the 32 digits alone.
    std::string as_string(unsigned int format) const;

    void clear() noexcept { m_data = {}; }

    void swap(Uuid & other) noexcept { std::swap(m_data, other.m_data); }

    /// The bytes folded as h * 5 + b, each unsigned.
    unsigned int hash() const noexcept;

    friend auto operator<=>(Uuid const &, Uuid const &) noexcept = default;

  private:
    BinaryData m_data;
};

/// Writes form 0.
VXCORE_API std::ostream & operator<<(std::ostream & stream, Uuid const & uuid);

} // namespace vxcore
