#pragma once

// Included by find_special_impl.h; not for direct use.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#elif defined(__aarch64__) && defined(__ARM_NEON)
#include <arm_neon.h>
#endif

namespace vxjson::impl {

/// Some neighbouring bytes that are compared at once: 16 with SSE2 or NEON, otherwise 8.
///
/// A comparison marks bytes by their top bits; the other bits of its result have no meaning. `|`
/// joins the marks of two comparisons, and `~` marks the bytes that were not marked.
///
///     ByteBlock const block(at);
///     if (auto const marks = (block.equal('"') | block.at_most(0x1F)).marks(); marks.any()) {
///         return at + marks.first();
///     }
class ByteBlock {
  public:
#if defined(__SSE2__)
    using Bytes = __m128i;
#elif defined(__aarch64__) && defined(__ARM_NEON)
    using Bytes = uint8x16_t;
#else
    using Bytes = std::uint64_t;
#endif

    static constexpr std::ptrdiff_t size = sizeof(Bytes);

    /// The marks of a comparison, in the order of the bytes.
    class Marks {
      public:
        bool any() const noexcept { return m_bits != 0; }

        /// The index of the first marked byte. There must be one.
        int first() const noexcept {
            if constexpr (size == sizeof(std::uint64_t) &&
                          std::endian::native == std::endian::big) {
                return std::countl_zero(m_bits) / sm_bits;
            }
            return std::countr_zero(m_bits) / sm_bits;
        }

      private:
        friend class ByteBlock;

#if defined(__SSE2__)
        static constexpr int sm_bits = 1; // per byte
        unsigned int m_bits;
#elif defined(__aarch64__) && defined(__ARM_NEON)
        static constexpr int sm_bits = 4;
        std::uint64_t m_bits;
#else
        static constexpr int sm_bits = 8;
        std::uint64_t m_bits;
#endif
        explicit Marks(decltype(m_bits) bits) noexcept : m_bits(bits) {}
    };

    /// Loads `size` bytes, all of which must be readable. No alignment is needed.
    explicit ByteBlock(char const * at) noexcept {
        std::memcpy(&m_bytes, at, sizeof(m_bytes));
    }

    /// Marks the bytes from 0x80 on.
    ByteBlock high() const noexcept {
        return *this;
    }

#if defined(__SSE2__)
    ByteBlock equal(char c) const noexcept {
        return ByteBlock(_mm_cmpeq_epi8(m_bytes, _mm_set1_epi8(c)));
    }

    /// Marks the bytes up to `limit`, which is below 0x80.
    ByteBlock at_most(char limit) const noexcept {
        // A byte equals the minimum of itself and the limit exactly if it is not above the limit.
        __m128i const low = _mm_min_epu8(m_bytes, _mm_set1_epi8(limit));
        return ByteBlock(_mm_cmpeq_epi8(low, m_bytes));
    }

    friend ByteBlock operator~(ByteBlock a) noexcept {
        return ByteBlock(_mm_xor_si128(a.m_bytes, _mm_set1_epi32(-1)));
    }

    friend ByteBlock operator|(ByteBlock a, ByteBlock b) noexcept {
        return ByteBlock(_mm_or_si128(a.m_bytes, b.m_bytes));
    }

    Marks marks() const noexcept {
        return Marks(static_cast<unsigned int>(_mm_movemask_epi8(m_bytes)));
    }

#elif defined(__aarch64__) && defined(__ARM_NEON)
    ByteBlock equal(char c) const noexcept {
        return ByteBlock(vceqq_u8(m_bytes, vdupq_n_u8(static_cast<unsigned char>(c))));
    }

    /// Marks the bytes up to `limit`, which is below 0x80.
    ByteBlock at_most(char limit) const noexcept {
        return ByteBlock(vcleq_u8(m_bytes, vdupq_n_u8(static_cast<unsigned char>(limit))));
    }

    friend ByteBlock operator~(ByteBlock a) noexcept {
        return ByteBlock(vmvnq_u8(a.m_bytes));
    }

    friend ByteBlock operator|(ByteBlock a, ByteBlock b) noexcept {
        return ByteBlock(vorrq_u8(a.m_bytes, b.m_bytes));
    }

    Marks marks() const noexcept {
        // Spreads the top bit over its byte, and keeps four bits of each.
        uint8x16_t const full = vcgeq_u8(m_bytes, vdupq_n_u8(0x80));
        uint8x8_t const narrow = vshrn_n_u16(vreinterpretq_u16_u8(full), 4);
        return Marks(vget_lane_u64(vreinterpret_u64_u8(narrow), 0));
    }

#else
    ByteBlock equal(char c) const noexcept {
        Bytes const different = m_bytes ^ sm_each * static_cast<unsigned char>(c);
        return ByteBlock(~(((different & sm_low) + sm_low) | different));
    }

    /// Marks the bytes up to `limit`, which is below 0x80.
    ByteBlock at_most(char limit) const noexcept {
        // The sum reaches the top bit of each byte above the limit, and never the next byte.
        Bytes const above = (m_bytes & sm_low) + sm_each * (0x7Fu - static_cast<unsigned>(limit));
        return ByteBlock(~(above | m_bytes));
    }

    friend ByteBlock operator~(ByteBlock a) noexcept {
        return ByteBlock(~a.m_bytes);
    }

    friend ByteBlock operator|(ByteBlock a, ByteBlock b) noexcept {
        return ByteBlock(a.m_bytes | b.m_bytes);
    }

    Marks marks() const noexcept {
        return Marks(m_bytes & ~sm_low);
    }

#endif

  private:
    static constexpr std::uint64_t sm_each = 0x0101010101010101;
    static constexpr std::uint64_t sm_low = 0x7F7F7F7F7F7F7F7F;

    explicit ByteBlock(Bytes bytes) noexcept : m_bytes(bytes) {}

    Bytes m_bytes;
};

} // namespace vxjson::impl
