#pragma once

// Included by text_output_impl.h; not for direct use.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace vxjson::impl {

/// A text of less than 16 bytes in two words, which are checked and copied without a loop or a
/// call. Most names and many strings are so short.
class ShortText {
  public:
    static constexpr std::size_t limit = 16;

    /// @param size  Below `limit`. No byte after them is read.
    ShortText(char const * data, std::size_t size) noexcept : m_size(size) {
        if (size >= sizeof(Word)) {
            std::memcpy(&m_first, data, sizeof(Word));
            std::memcpy(&m_last, data + size - sizeof(Word), sizeof(Word)); // may overlap
        } else {
            m_first = m_last = load_short(data, size);
        }
    }

    /// True if a byte may not be in a JSON string without an escape: a quote, a backslash or a
    /// control character.
    ///
    /// @param high  The top bit of each byte to find bytes from 0x80 on too; otherwise 0.
    bool has_special(std::uint64_t high) const noexcept {
        return ((special(m_first) | special(m_last)) | ((m_first | m_last) & high)) != 0;
    }

    /// Writes the text and returns its end. Needs room for 8 bytes even if the text is shorter.
    char * copy(char * to) const noexcept {
        std::memcpy(to, &m_first, sizeof(Word));
        std::memcpy(to + (m_size < sizeof(Word) ? 0 : m_size - sizeof(Word)), &m_last,
                    sizeof(Word));
        return to + m_size;
    }

  private:
    using Word = std::uint64_t;

    static constexpr Word sm_each = 0x0101010101010101;
    static constexpr Word sm_blanks = sm_each * ' ';

    /// Loads less than 8 bytes, in the order of memory, with blanks after them.
    static Word load_short(char const * data, std::size_t size) noexcept {
        if constexpr (std::endian::native == std::endian::little) {
            if (size >= sizeof(std::uint32_t)) {
                std::uint32_t first;
                std::uint32_t last;
                std::memcpy(&first, data, sizeof(first));
                std::memcpy(&last, data + size - sizeof(last), sizeof(last));
                return first | Word{last} << 8 * (size - sizeof(last)) | sm_blanks << 8 * size;
            }
            if (size == 0) {
                return sm_blanks;
            }
            auto const byte = [data](std::size_t i) {
                return Word{static_cast<unsigned char>(data[i])} << 8 * i;
            };
            return byte(0) | byte(size / 2) | byte(size - 1) | sm_blanks << 8 * size;
        } else {
            Word word = sm_blanks;
            if (size != 0) {
                std::memcpy(&word, data, size);
            }
            return word;
        }
    }

    /// Not 0 if a byte is special. A subtraction borrows from the next byte only where the result
    /// is not 0 anyway, and `~word` excludes bytes from 0x80 on.
    static Word special(Word word) noexcept {
        Word const quote = (word ^ sm_each * '"') - sm_each;
        Word const backslash = (word ^ sm_each * '\\') - sm_each;
        return ((word - sm_blanks) | quote | backslash) & ~word & sm_each * 0x80;
    }

    std::size_t m_size;
    Word m_first;
    Word m_last; // the last bytes; the same as m_first if there are less than 8
};

} // namespace vxjson::impl
