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

    /// Reads a text in either format of `as_string`. Digits may be of either case.
    ///
    /// @return false if `text` is in neither format; `uuid` is then unchanged.
    static bool parse(std::string_view text, Uuid & uuid) noexcept;

    /// The 16 bytes in the order of the text.
    constexpr BinaryData const & data() const noexcept VXCORE_LIFETIMEBOUND { return m_data; }

    /// Returns the text in lower case.
    ///
    /// @param format  1: 32 digits without dashes; any other value: 8-4-4-4-12 with dashes.
    std::string as_string(unsigned int format) const;

    /// Sets all bytes to zero.
    void clear() noexcept { m_data = {}; }

    void swap(Uuid & other) noexcept { std::swap(m_data, other.m_data); }

    /// Folds the bytes, each unsigned, with `hash_fold`.
    unsigned int hash() const noexcept;

    /// Orders by the bytes, each unsigned.
    friend auto operator<=>(Uuid const &, Uuid const &) noexcept = default;

  private:
    BinaryData m_data;
};

/// Writes format 0.
VXCORE_API std::ostream & operator<<(std::ostream & stream, Uuid const & uuid);

} // namespace vxcore
