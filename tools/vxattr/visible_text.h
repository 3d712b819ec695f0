#pragma once

#include <string>
#include <string_view>

namespace vxattr {

/// Replaces control bytes, which a terminal could obey, by escapes such as "\x1b". Takes text in
/// pieces, which may split a C1 control character: those have two bytes in UTF-8.
class VisibleText {
  public:
    /// @param keepsLines  Leaves line feeds and tabs as they are.
    explicit VisibleText(bool keepsLines) noexcept : m_keepsLines(keepsLines) {}

    /// Appends `text` to `out`, except for a last byte that may begin a C1 character.
    void append(std::string_view text, std::string & out);

    /// Appends the byte held back, if any.
    void finish(std::string & out);

  private:
    bool m_keepsLines;
    bool m_isHeld = false; // the byte C2
};

/// `text` as one line, with control bytes as escapes.
std::string visible(std::string_view text);

/// The name in single quotes, with control bytes as escapes. A long one is cut as in traces, with
/// "...(+n)" for the n bytes left out: printed once per value, long names could fill a disk.
std::string quoted_name(std::string_view name);

/// The path, with control bytes as escapes. Of a long path, both ends are shown with "...(+n)"
/// between them.
std::string shown_path(std::string_view path);

} // namespace vxattr
