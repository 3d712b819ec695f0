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

/// The name in single quotes, visible. A long one is cut as in traces, with "...(+n)" for the n
/// bytes left out: a name that is shown once for each of many values would fill disks.
std::string quoted_name(std::string_view name);

/// The path, visible. Of a long one both ends are shown, with "...(+n)" between them.
std::string shown_path(std::string_view path);

} // namespace vxattr
