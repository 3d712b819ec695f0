#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

namespace vxfuzz {

/// Takes decisions and data from the front of an input. After its end every byte is 0, so that any
/// input is valid and a prefix means nearly the same.
class Input {
  public:
    Input(unsigned char const * data, std::size_t size) noexcept : m_at(data), m_end(data + size) {}

    bool at_end() const noexcept { return m_at == m_end; }

    unsigned char byte() noexcept { return at_end() ? 0 : *m_at++; }

    /// Takes a number from 0 to n - 1 off one byte; n is at most 256.
    unsigned int below(unsigned int n) noexcept { return byte() % n; }

    /// Takes a signed number: one byte for its size of 0 to 8 bytes, then its bytes, the most
    /// significant one first.
    long long number() noexcept {
        unsigned int const width = below(9);
        unsigned long long bits = 0;
        for (unsigned int i = 0; i < width; ++i) {
            bits = bits << 8 | byte();
        }
        unsigned int const shift = width == 0 ? 0 : 64 - 8 * width;
        return static_cast<long long>(bits << shift) >> shift;
    }

    /// Takes a text: one byte for its size of 0 to `limit` bytes, then its bytes, as far as there
    /// are any. `limit` is at most 255.
    std::string text(unsigned int limit = 64) {
        std::size_t const size =
            std::min<std::size_t>(below(limit + 1), static_cast<std::size_t>(m_end - m_at));
        std::string text(reinterpret_cast<char const *>(m_at), size);
        m_at += size;
        return text;
    }

  private:
    unsigned char const * m_at;
    unsigned char const * m_end;
};

} // namespace vxfuzz
