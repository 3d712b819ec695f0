#include "control_file.h"

#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"

#include <algorithm>
#include <fstream>
#include <utility>

namespace inventory {

namespace {

constinit vxcore::ErrorCode const badData("error.inventory.data", true);

constexpr std::string_view blanks = " \t";

bool equal_names(std::string_view a, std::string_view b) noexcept {
    return a.size() == b.size() &&
           vxcore::string_equal_nocase_ascii(a.data(), static_cast<unsigned int>(a.size()),
                                             b.data(), static_cast<unsigned int>(b.size()));
}

bool is_field_name(std::string_view name) noexcept {
    return !name.empty() && name[0] != '#' && name[0] != '-' &&
           std::all_of(name.begin(), name.end(), [](char c) { return c > ' ' && c <= '~'; });
}

std::string read_file(std::string const & path) {
    std::ifstream file(path, std::ios::binary);
    std::string text;
    char chunk[1 << 16];
    do {
        file.read(chunk, sizeof chunk);
        text.append(chunk, static_cast<std::size_t>(file.gcount()));
    } while (file);
    if (!file.eof()) {
        fail(path, "the file cannot be read");
    }
    return text;
}

} // namespace

Field const * find_field(Paragraph const & paragraph, std::string_view name) {
    auto const field = std::find_if(paragraph.begin(), paragraph.end(),
                                    [name](Field const & f) { return equal_names(f.name, name); });
    return field == paragraph.end() ? nullptr : &*field;
}

void fail(std::string const & place, std::string what) {
    vxcore::ErrorComposer("{@place}: {@what}")
        .param("place", place)
        .param("what", std::move(what))
        .throw_error(badData, VXCORE_LOCATION("inventory::fail()"));
}

ControlFile::ControlFile(std::string path) : m_path(std::move(path)), m_text(read_file(m_path)) {}

void ControlFile::fail(unsigned int line, std::string what) const {
    inventory::fail(m_path + ":" + vxcore::to_string(line), std::move(what));
}

bool ControlFile::next_paragraph(Paragraph & paragraph) {
    paragraph.clear();
    std::string_view line;
    while (next_line(line)) {
        if (line.find_first_not_of(blanks) == std::string_view::npos) {
            if (!paragraph.empty()) {
                return true;
            }
        } else if (blanks.find(line[0]) != std::string_view::npos) {
            if (paragraph.empty()) {
                fail(m_line, "a continuation line without a field above it");
            }
            // The lines of a field are adjacent in the text, so extending the view adds this line.
            std::string_view & text = paragraph.back().text;
            text = {text.data(), line.data() + line.size()};
        } else {
            Field const field = field_of(line);
            if (find_field(paragraph, field.name) != nullptr) {
                fail(m_line, "this field stands in the paragraph already");
            }
            paragraph.push_back(field);
        }
    }
    return !paragraph.empty();
}

bool ControlFile::next_line(std::string_view & line) {
    if (m_position == m_text.size()) {
        return false;
    }
    ++m_line;
    std::size_t const end = m_text.find('\n', m_position);
    if (end == std::string::npos) {
        fail(m_line, "the file ends in the middle of this line");
    }
    line = std::string_view(m_text).substr(m_position, end - m_position);
    if (line.find('\0') != std::string_view::npos) {
        fail(m_line, "a zero byte, which no text holds");
    }
    m_position = end + 1;
    return true;
}

Field ControlFile::field_of(std::string_view line) const {
    std::size_t const colon = line.find(':');
    if (colon == std::string_view::npos || !is_field_name(line.substr(0, colon))) {
        fail(m_line, "this line is neither field, continuation nor blank");
    }
    return {line.substr(0, colon), line.substr(colon + 1), m_line};
}

} // namespace inventory
