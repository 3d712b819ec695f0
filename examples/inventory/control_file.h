#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace inventory {

/// Raises error.inventory.data with the message "PLACE: WHAT".
[[noreturn]] void fail(std::string const & place, std::string what);

/// One field of a paragraph. The views hold for as long as the ControlFile lives.
struct Field {
    std::string_view name;
    /// All that follows the colon, including continuation lines, without the last line feed.
    std::string_view text;
    /// The line of the name, counted from 1.
    unsigned int line;
};

using Paragraph = std::vector<Field>;

/// Returns the field with this name, compared without regard to case. Returns null when there is
/// none.
Field const * find_field(Paragraph const & paragraph, std::string_view name);

/// A file in the control format of Debian: paragraphs of "Name: text", separated by blank lines. A
/// line that begins with a blank or a tab continues the field above it.
///
/// Holds the file as one text and returns views into it. No line is copied.
///
/// Errors. Bad data raises error.inventory.data with the message "FILE:LINE: what". No message
/// repeats bytes of the file, which may be of any kind.
class ControlFile {
  public:
    /// @raises error.inventory.data: the file does not exist or cannot be read.
    explicit ControlFile(std::string path);
    ControlFile(ControlFile const &) = delete;
    ControlFile & operator=(ControlFile const &) = delete;

    std::string const & path() const noexcept { return m_path; }

    /// Returns the size of the file in bytes.
    std::size_t size() const noexcept { return m_text.size(); }

    /// Replaces `paragraph` by the next one.
    ///
    /// @return false at the end of the file.
    /// @raises error.inventory.data: a line is neither a field, a continuation nor blank, a field
    ///         occurs twice, there is a zero byte, or the file ends in the middle of a line.
    bool next_paragraph(Paragraph & paragraph);

    /// Raises error.inventory.data for `line`, counted from 1.
    [[noreturn]] void fail(unsigned int line, std::string what) const;

  private:
    bool next_line(std::string_view & line);
    Field field_of(std::string_view line) const;

    std::string m_path;
    std::string m_text;
    std::size_t m_position = 0; // of the next line
    unsigned int m_line = 0;    // number of the line read last
};

} // namespace inventory
