#pragma once

#include "vxcore/export.h"
#include "vxcore/string_token_impl.h"

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>

namespace vxcore {

namespace impl {
class KeyLoan;
}

/// A handle on an interned string: equal strings share one token, so two keys compare by address.
///
/// Tokens are reference-counted. A token without keys is freed, or kept for the next key of its
/// text: at most 2,560 tokens in all, with texts of at most 64 bytes. The empty string has no
/// token.
///
/// Cost. One pointer wide. Making a key hashes its text and takes one lock among 64; make keys once
/// and keep them. A copy is one atomic count, a plain one while the process has one thread.
/// Comparing, hashing and moving touch no characters and no lock.
///
/// Threads. Keys may be made, copied and dropped in any thread; one key object is a plain value.
///
///     static StringKey const port("port"); // interned once
///     if (key == port) { ... }             // compares two pointers
class VXCORE_API StringKey {
  public:
    /// The key of the empty string.
    constexpr StringKey() noexcept = default;

    /// Interns `text`.
    ///
    /// @raises std::length_error: `text` is beyond 2^32 - 1 bytes. std::bad_alloc: no memory.
    explicit StringKey(std::string_view text);

    /// A copy adds a reference to the token. A move leaves `other` as the empty key.
    StringKey(StringKey const & other) noexcept : m_token(other.m_token) {
        if (m_token != nullptr) {
            m_token->add_refs(1);
        }
    }

    StringKey(StringKey && other) noexcept : m_token(std::exchange(other.m_token, nullptr)) {}

    StringKey & operator=(StringKey other) noexcept {
        swap(other);
        return *this;
    }

    /// Nothing for the empty key. Takes the lock of the token's part of the table only if this may
    /// be its last key.
    ~StringKey() {
        if (m_token != nullptr) {
            m_token->drop_refs(1);
        }
    }

    /// Looks `text` up without interning it, so that untrusted text takes no memory.
    ///
    /// @return false if no key of that text is alive; `key` is then unchanged. Always true for the
    ///         empty text.
    static bool find_interned(std::string_view text, StringKey & key) noexcept;

    /// The string; O(1). The reference is valid as long as any key of the same string lives, that
    /// of the empty string for ever.
    std::string const & value() const noexcept VXCORE_LIFETIMEBOUND {
        return m_token != nullptr ? m_token->text : g_emptyString;
    }

    /// SipHash-1-3 (Aumasson and Bernstein, 2012), keyed with a random secret of the process: it
    /// differs from run to run, and nobody can choose texts that collide. Computed at the first
    /// use, once per token. 0 for the empty string.
    unsigned int hash() const noexcept { return m_token != nullptr ? m_token->get_hash() : 0; }

    /// The address of the token: equal for equal strings, null for the empty one. It identifies the
    /// string only while a key of it lives; another string may get the address afterwards.
    void const * key_value() const noexcept { return m_token; }

    void swap(StringKey & other) noexcept { std::swap(m_token, other.m_token); }

    /// Makes this the empty key.
    void clear() noexcept { StringKey().swap(*this); }

    /// Inserts the string as any string is inserted: width and fill of the stream apply.
    void write_trace(std::ostream & stream) const;

    /// True if the strings are equal.
    friend bool operator==(StringKey const & a, StringKey const & b) noexcept {
        return a.m_token == b.m_token;
    }

    /// Order of the tokens' addresses: total while the keys live, not alphabetical.
    friend bool operator<(StringKey const & a, StringKey const & b) noexcept {
        return reinterpret_cast<std::uintptr_t>(a.m_token) <
               reinterpret_cast<std::uintptr_t>(b.m_token);
    }

  private:
    friend class impl::KeyLoan;

    /// Adopts a reference.
    explicit constexpr StringKey(impl::StringToken * token) noexcept : m_token(token) {}

    impl::StringToken * m_token = nullptr;
};

} // namespace vxcore
