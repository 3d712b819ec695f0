#include "vxjson/reserved_words.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

namespace vxjson {

namespace {

constexpr std::size_t shortest_word = 2;
constexpr std::size_t longest_word = 10;

/// Sorted, so that a name is compared only with the words that share its first letter.
constexpr std::string_view words[] = {
    "break",      "case",      "catch",    "class", "const",      "continue", "debugger",
    "default",    "delete",    "do",       "else",  "enum",       "export",   "extends",
    "finally",    "for",       "function", "if",    "implements", "import",   "in",
    "instanceof", "interface", "let",      "new",   "package",    "private",  "protected",
    "public",     "return",    "static",   "super", "switch",     "this",     "throw",
    "try",        "typeof",    "var",      "void",  "while",      "with",     "yield"};
static_assert(std::size(words) == 42);
static_assert(std::is_sorted(std::begin(words), std::end(words)));

/// For each letter the index of the first word that starts with it or with a later letter. The 27th
/// entry is the number of words.
constexpr std::array<unsigned char, 27> make_starts() {
    std::array<unsigned char, 27> starts{};
    for (std::size_t letter = 0; letter < starts.size(); ++letter) {
        while (starts[letter] < std::size(words) &&
               words[starts[letter]].front() < static_cast<char>('a' + letter)) {
            ++starts[letter];
        }
    }
    return starts;
}

constexpr std::array<unsigned char, 27> starts = make_starts();

/// For each letter the set of second letters of the words that start with it, as bits. Nearly all
/// other names differ there.
constexpr std::array<unsigned int, 26> make_second_letters() {
    std::array<unsigned int, 26> letters{};
    for (std::string_view const word : words) {
        letters[static_cast<std::size_t>(word[0] - 'a')] |= 1u << (word[1] & 31);
    }
    return letters;
}

constexpr std::array<unsigned int, 26> second_letters = make_second_letters();

} // namespace

bool is_reserved_word(std::string_view name) noexcept {
    if (name.size() < shortest_word || name.size() > longest_word || name.front() < 'a' ||
        name.front() > 'z') {
        return false;
    }
    auto const letter = static_cast<std::size_t>(name.front() - 'a');
    if ((second_letters[letter] >> (name[1] & 31) & 1) == 0) {
        return false;
    }
    auto const * const end = words + starts[letter + 1];
    return std::find(words + starts[letter], end, name) != end;
}

} // namespace vxjson
