#pragma once

// Included by reader.h; not for direct use.

#include "vxjson/export.h"

#include <string>
#include <string_view>

namespace vxjson::impl {

/// The text of a value: a string of its own, or one that is lent, and copied when it is first asked
/// for. So walking through a document copies nothing that nobody reads.
///
/// Threads. A text belongs to one thread, even where it is const: the first read may copy it.
class LazyText {
  public:
    /// Takes the text of a source that stays as it is until `keep()` or the next change. Memory for
    /// the copy is reserved here, so that making it cannot fail.
    void lend(std::string_view text) {
        if (text.size() > m_own.capacity()) [[unlikely]] {
            reserve(text.size());
        }
        m_lent = text;
    }

    VXJSON_LOCAL void assign(std::string_view text);

    void set(std::string_view text, bool isLent) { isLent ? lend(text) : assign(text); }

    /// Empties the text. Its memory is kept, up to a limit.
    void clear() noexcept {
        constexpr std::size_t maxKept = 65536; // bytes
        m_lent = {};
        m_own.clear();
        if (m_own.capacity() > maxKept) [[unlikely]] {
            release();
        }
    }

    /// Copies a lent text; the source is not needed any more.
    void keep() noexcept {
        if (m_lent.data() != nullptr) {
            copy();
        }
    }

    /// The text as a string of its own.
    std::string & string() noexcept {
        keep();
        return m_own;
    }

    std::string_view view() const noexcept { return m_lent.data() != nullptr ? m_lent : m_own; }

  private:
    VXJSON_API void copy() noexcept;
    VXJSON_LOCAL void reserve(std::size_t size);
    VXJSON_LOCAL void release() noexcept;

    std::string_view m_lent; // data() is null if the text is in m_own
    std::string m_own;
};

} // namespace vxjson::impl
