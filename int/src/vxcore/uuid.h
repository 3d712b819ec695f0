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
///
/// The class stores and compares identifiers and makes random ones. It does not check version and
/// variant: all 2^128 values are valid.
///
/// Cost. 16 bytes, copied as such. Only `as_string` allocates.
///
///     Uuid const fresh = Uuid::random();
///     Uuid id;
///     if (Uuid::parse("123e4567-e89b-12d3-a456-426614174000", id)) {
///         id.data()[0]; // 0x12
///     }
class VXCORE_API Uuid {
  public:
    using BinaryData = std::array<unsigned char, 16>;

    /// All bytes zero.
    constexpr Uuid() noexcept : m_data{} {}

    /// @param data  The bytes in the order of the text, not in that of a machine's integers.
    constexpr explicit Uuid(BinaryData const & data) noexcept : m_data(data) {}

    /// A new identifier of 122 random bits: version 4 of RFC 9562.
    ///
    /// The bits come from the operating system, so processes that were forked or restored from a
    /// snapshot never share an identifier. It identifies things and is no secret: for keys there is
    /// vxcrypto::Key::random.
    ///
    /// @cost   One system call. At boot it waits until the system has collected enough randomness.
    /// @raises std::system_error: the system has no source of random bytes.
    static Uuid random();

    /// Reads a text in either format of `as_string`. Digits may be of either case. Braces, blanks
    /// and prefixes are refused.
    ///
    /// @return false if `text` is in neither format; `uuid` is then unchanged.
    static bool parse(std::string_view text, Uuid & uuid) noexcept;

    /// The 16 bytes in the order of the text.
    constexpr BinaryData const & data() const noexcept VXCORE_LIFETIMEBOUND { return m_data; }

    /// Returns the text in lower case.
    ///
    /// @param format  1: 32 digits without dashes; any other value: 8-4-4-4-12 with dashes.
    std::string as_string(unsigned int format = 0) const;

    /// Sets all bytes to zero.
    void clear() noexcept { m_data = {}; }

    void swap(Uuid & other) noexcept { std::swap(m_data, other.m_data); }

    /// Folds the bytes, each unsigned, with `hash_fold`. Not for tables of untrusted identifiers:
    /// the hash has no key.
    unsigned int hash() const noexcept;

    /// Orders by the bytes, each unsigned, which is the order of the texts.
    friend auto operator<=>(Uuid const &, Uuid const &) noexcept = default;

  private:
    BinaryData m_data;
};

/// Writes the text of format 0: with dashes.
VXCORE_API std::ostream & operator<<(std::ostream & stream, Uuid const & uuid);

} // namespace vxcore
