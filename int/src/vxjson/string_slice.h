#pragma once

#include "vxjson/export.h"

#include <string_view>

namespace vxjson {

/// Raises the `std::out_of_range` of `StringSlice::operator[]`.
[[noreturn]] VXJSON_API void throw_slice_range();

/// A view of the text of a token: `size` bytes from `pointer + offset` on.
///
/// It owns nothing. A slice from a tokenizer is valid until the tokenizer moves to the next token.
///
///     StringSlice slice;
///     std::string const copy(tokenizer.text(slice).view()); // keep the text beyond the token
///
/// Cost. A pointer and two numbers; copy it freely. Nothing allocates.
///
/// Threads. A plain value. The bytes belong to the tokenizer, and so to its thread.
///
/// Errors. Only `operator[]` raises.
class StringSlice {
  public:
    /// An empty slice; `data()` is null.
    constexpr StringSlice() noexcept = default;

    /// The bytes [offset, offset + size) at `pointer`. The range is not checked.
    ///
    /// @param pointer  May be null when `offset` and `size` are 0.
    /// @param offset   In bytes.
    /// @param size     In bytes.
    constexpr StringSlice(char const * pointer, unsigned int offset, unsigned int size) noexcept
        : m_data(pointer + offset), m_size(size) {}

    /// The first byte. The text is not zero-terminated and may contain zeros.
    constexpr char const * data() const noexcept { return m_data; }

    /// The size of the text in bytes.
    constexpr unsigned int size() const noexcept { return m_size; }

    /// True when `size()` is 0.
    constexpr bool empty() const noexcept { return m_size == 0; }

    /// The same bytes, valid as long as the slice's.
    constexpr std::string_view view() const noexcept { return {data(), m_size}; }

    /// The byte at index `at`.
    ///
    /// @raises std::out_of_range with the text "StringSlice": `at` is not below the size.
    constexpr char operator[](unsigned int at) const {
        if (at >= m_size) {
            throw_slice_range();
        }
        return data()[at];
    }

  private:
    char const * m_data = nullptr;
    unsigned int m_size = 0;
};

} // namespace vxjson
