#pragma once

#include <string>
#include <string_view>

namespace vxattr {

/// Replaces control bytes, which could drive a terminal, by escapes such as "\x1b". Handles text
/// that comes in pieces: the C1 control characters of UTF-8 are two bytes.
class VisibleText {
  public:
    /// @param keepsLines  Line feeds and tabs pass.
    explicit VisibleText(bool keepsLines) noexcept : m_keepsLines(keepsLines) {}

    /// Appends `text` to `out`, all but a last byte that may begin a C1 character.
    void append(std::string_view text, std::string & out);

    /// Appends what was held back.
    void finish(std::string & out);

  private:
    bool m_keepsLines;
    bool m_isHeld = false; // the byte C2
};

/// `text` as one line without control bytes.
std::string visible(std::string_view text);

} // namespace vxattr
