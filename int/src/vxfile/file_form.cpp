#include "vxfile/file_form.h"

#include <algorithm>
#include <iterator>

namespace vxfile {

namespace {

constexpr std::string_view blanks = " \t\r\n";
constexpr std::string_view digits = "0123456789";

struct Form {
    EFileForm form;
    char const * name;
    char const * ending;
};

constexpr Form forms[] = {{EFileForm::eJson, "json", ".json"},
                          {EFileForm::eBinary, "binary", ".bin"},
                          {EFileForm::eText, "text", ".txt"}};

bool is_printable(char c) noexcept {
    return (c >= ' ' && c <= '~') || blanks.find(c) != std::string_view::npos;
}

std::string_view without_blanks(std::string_view text) noexcept {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text;
}

/// Whether `rest`, which follows a "[", continues a list of the text form, not a JSON array.
bool is_text_list(std::string_view rest) noexcept {
    rest = without_blanks(rest);
    std::size_t const number = rest.find_first_not_of(digits);
    bool const isCount = number != 0 && number < rest.size() && rest[number] == ':';
    return isCount || rest.starts_with('<');
}

bool is_text_element(std::string_view text) noexcept {
    constexpr std::string_view starts = "<@#([{0123456789-P";
    constexpr std::string_view words[] = {"null", "true", "false", "inf", "nan("};
    return starts.find(text[0]) != std::string_view::npos ||
           std::any_of(std::begin(words), std::end(words),
                       [text](std::string_view word) { return text.starts_with(word); });
}

} // namespace

char const * name_of(EFileForm form) noexcept {
    return std::find_if(std::begin(forms), std::end(forms),
                        [form](Form const & known) { return known.form == form; })
        ->name;
}

std::optional<EFileForm> form_of_ending(std::string_view path) noexcept {
    for (Form const & known : forms) {
        if (path.ends_with(known.ending)) {
            return known.form;
        }
    }
    return std::nullopt;
}

EFileForm guess_form(std::string_view head) noexcept {
    bool const isMarked = head.starts_with("\xEF\xBB\xBF");
    std::string_view const text = without_blanks(head.substr(isMarked ? 3 : 0));
    if (text.empty()) {
        return isMarked ? EFileForm::eJson : EFileForm::eBinary;
    }
    std::string_view const next = without_blanks(text.substr(1));
    if (text[0] == '{' && (next.empty() || next[0] == '"' || next[0] == '}')) {
        return EFileForm::eJson;
    }
    if (text[0] == '[' && !is_text_list(next)) {
        return EFileForm::eJson;
    }
    if (!std::all_of(head.begin(), head.end(), is_printable)) {
        return EFileForm::eBinary;
    }
    if (text[0] == '"') {
        return EFileForm::eJson; // a string alone, which its reader refuses
    }
    return is_text_element(text) ? EFileForm::eText : EFileForm::eBinary;
}

} // namespace vxfile
