#pragma once

#include "vxcore/string/siphash_internal.h"
#include "vxcore/text_fingerprint.h"

#include <cstdint>
#include <random>
#include <string_view>

namespace vxcore::impl {

/// The two hashes of a text under one random secret of the process.
///
/// - `strong`: SipHash-1-3, which is what StringKey::hash() returns. Even with its values in view,
///   nobody can choose texts that collide.
/// - `quick`: for the buckets of the table, where its values are not visible. Texts of up to 16
///   bytes take the sum of products Multilinear-HM (Lemire and Kaser, "Strongly universal string
///   hashing is fast", 2014) in a quarter of the time. The values of two different texts are
///   independent and uniform over the secrets, so every group of n bits is equal with probability
///   2^-n, whatever the texts. But it is linear: from texts that are known to collide, others can
///   be derived. The table guards against that by itself. Longer texts take SipHash.
class TextHash {
  public:
    /// @raises std::exception: the system has no random numbers.
    TextHash() {
        std::random_device random;
        for (std::uint64_t & word : m_secret) {
            word = std::uint64_t{random()} << 32 | random();
        }
    }

    // Not in line, so that the path of short texts needs few registers.
    [[gnu::noinline]] unsigned int strong(std::string_view text) const noexcept {
        SipHashKey const key{m_secret[0], m_secret[1]};
        return static_cast<unsigned int>(SipHash<1, 3>::hash(key, text.data(), text.size()));
    }

    unsigned int quick(std::string_view text) const noexcept {
        if (text.size() > TextFingerprint::exact_size) {
            return strong(text);
        }
        TextFingerprint const fingerprint(text);
        // The fingerprint is the text, as four characters of 32 bits and the size.
        std::uint64_t const sum =
            m_secret[2] + m_secret[3] * fingerprint.size +
            (m_secret[4] + low(fingerprint.head)) * (m_secret[5] + high(fingerprint.head)) +
            (m_secret[6] + low(fingerprint.tail)) * (m_secret[7] + high(fingerprint.tail));
        return static_cast<unsigned int>(high(sum));
    }

  private:
    static std::uint64_t low(std::uint64_t word) noexcept { return word & 0xFFFFFFFFu; }

    static std::uint64_t high(std::uint64_t word) noexcept { return word >> 32; }

    std::uint64_t m_secret[8];
};

/// The secret is made at the first call, since keys may be made before the initialisers of any
/// file.
inline TextHash const & text_hash() {
    static TextHash const hash;
    return hash;
}

} // namespace vxcore::impl
