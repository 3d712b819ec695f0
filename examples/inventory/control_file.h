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
    /// All behind the colon, continuation lines included, without the last line feed.
    std::string_view text;
    /// The line of the name, counted from 1.
    unsigned int line;
};

using Paragraph = std::vector<Field>;

/// The field of that name, in any case of letters; null when there is none.
Field const * find_field(Paragraph const & paragraph, std::string_view name);

/// A file in the control format of Debian: paragraphs of "Name: text" with blank lines between
/// them; a line that begins with a blank or a tab continues the field above it.
///
/// The file is held as one text, and what is given out are views into it: no line is copied.
///
/// Errors. Bad data raises error.inventory.data with the message "FILE:LINE: what". No message
/// repeats bytes of the file, which may be of any kind.
class ControlFile {
  public:
    /// @raises error.inventory.data: the file is not there or cannot be read.
    explicit ControlFile(std::string path);
    ControlFile(ControlFile const &) = delete;
    ControlFile & operator=(ControlFile const &) = delete;

    std::string const & path() const noexcept { return m_path; }

    /// Bytes.
    std::size_t size() const noexcept { return m_text.size(); }

    /// Replaces `paragraph` by the next one; false at the end of the file.
    ///
    /// @raises error.inventory.data: a line that is neither field, continuation nor blank, a field
    ///         that comes twice, a zero byte, or an end in the middle of a line.
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
