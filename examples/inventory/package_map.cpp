#include "package_map.h"

#include "vxattribute/binary_value.h"
#include "vxattribute/core_elements.h"
#include "vxattribute/multi_value_writer.h"
#include "vxcore/chrono.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <stdexcept>
#include <utility>

namespace inventory {

namespace {

using namespace vxattribute;

std::string_view trimmed(std::string_view text) noexcept {
    constexpr std::string_view space = " \t\r\n";
    std::size_t const first = text.find_first_not_of(space);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(space) + 1 - first);
}

/// Returns the text up to the separator, and removes both from `rest`.
std::string_view take_piece(std::string_view & rest, char separator) noexcept {
    std::string_view const piece = rest.substr(0, rest.find(separator));
    rest.remove_prefix(std::min(piece.size() + 1, rest.size()));
    return piece;
}

std::string_view first_line(std::string_view text) noexcept {
    return trimmed(take_piece(text, '\n'));
}

std::string_view field_text(Paragraph const & paragraph, std::string_view name) {
    Field const * const field = find_field(paragraph, name);
    return field == nullptr ? std::string_view() : first_line(field->text);
}

AttributeValue to_line(std::string_view text) {
    return first_line(text);
}

AttributeValue to_integer(std::string_view text) {
    std::string_view const digits = trimmed(text);
    char const * const end = digits.data() + digits.size();
    long long number = 0;
    auto const [stop, error] = std::from_chars(digits.data(), end, number);
    if (error != std::errc() || stop != end) {
        throw std::invalid_argument("not a whole number");
    }
    return number;
}

AttributeValue to_boolean(std::string_view text) {
    std::string_view const word = trimmed(text);
    if (word != "yes" && word != "no") {
        throw std::invalid_argument("neither yes nor no");
    }
    return word == "yes";
}

AttributeValue to_uri(std::string_view text) {
    return vxuri::UriReference::parse(std::string(first_line(text)));
}

AttributeValue to_list(std::string_view text) {
    AttributeValue list;
    auto writer = list.multivalue_writer<std::string>();
    while (!text.empty()) {
        if (std::string_view const piece = trimmed(take_piece(text, ',')); !piece.empty()) {
            writer.push_back(std::string(piece));
        }
    }
    return list;
}

using Digest = std::array<unsigned char, 16>;

bool parse_digest(std::string_view word, Digest & digest) noexcept {
    if (word.size() != 2 * digest.size()) {
        return false;
    }
    char const * digits = word.data();
    for (unsigned char & byte : digest) {
        if (std::from_chars(digits, digits + 2, byte, 16).ptr != digits + 2) {
            return false;
        }
        digits += 2;
    }
    return true;
}

/// Collects the digests. A line is a path, a digest and perhaps flags. It may have "newconffile"
/// instead of the digest.
AttributeValue to_digests(std::string_view text) {
    AttributeValue digests;
    auto writer = digests.multivalue_writer<BinaryValue>();
    while (!text.empty()) {
        std::string_view line = take_piece(text, '\n');
        while (!line.empty()) {
            if (Digest digest; parse_digest(take_piece(line, ' '), digest)) {
                writer.push_back(BinaryValue(digest.data(), digest.size()));
            }
        }
    }
    return digests;
}

/// Returns the lines after the first, without the blank that marks them. " ." is an empty line.
AttributeValue to_long_text(std::string_view text) {
    take_piece(text, '\n');
    if (text.empty()) {
        return {};
    }
    std::string lines;
    while (!text.empty()) {
        std::string_view const line = take_piece(text, '\n').substr(1);
        lines.append(line == "." ? "" : line).append(text.empty() ? "" : "\n");
    }
    return lines;
}

/// How one field becomes one attribute. A value without elements is not added.
struct Rule {
    char const * field;
    AttributeName const & attribute;
    AttributeValue (*convert)(std::string_view text); // raises std::invalid_argument
};

Rule const rules[] = {
    {"Package", names::name, to_line},
    {"Version", names::version, to_line},
    {"Section", names::section, to_line},
    {"Installed-Size", names::installedSize, to_integer},
    {"Essential", names::essential, to_boolean},
    {"Depends", names::depends, to_list},
    {"Homepage", names::homepage, to_uri},
    {"Conffiles", names::conffileDigests, to_digests},
    {"Description", names::summary, to_line},
    {"Description", names::description, to_long_text},
};

MutableAttributeMap to_package(ControlFile const & file, Paragraph const & paragraph) {
    MutableAttributeMap package;
    for (Rule const & rule : rules) {
        Field const * const field = find_field(paragraph, rule.field);
        if (field == nullptr) {
            continue;
        }
        try {
            if (AttributeValue value = rule.convert(field->text); !value.empty()) {
                package.add(rule.attribute, std::move(value));
            }
        } catch (std::invalid_argument const & e) {
            file.fail(field->line, std::string(rule.field) + ": " + e.what());
        }
    }
    return package;
}

void add_list_time(MutableAttributeMap & package, Paragraph const & paragraph,
                   std::filesystem::path const & infoFolder) {
    std::string const name(field_text(paragraph, "Package"));
    std::string const architecture(field_text(paragraph, "Architecture"));
    for (std::string const & file : {name + ":" + architecture + ".list", name + ".list"}) {
        std::error_code error;
        auto const time = std::filesystem::last_write_time(infoFolder / file, error);
        if (!error) {
            package.add(names::listTime,
                        vxcore::from_sys_time(std::chrono::file_clock::to_sys(time)));
            return;
        }
    }
}

void add_package(MutableAttributeMap & inventory, ControlFile const & file,
                 Paragraph const & paragraph, MutableAttributeMap const & package) {
    std::string name(field_text(paragraph, "Package"));
    if (name.empty()) {
        file.fail(paragraph.front().line, "a paragraph without a package name");
    }
    bool isAdded =
        field_text(paragraph, "Multi-Arch") != "same" && inventory.insert({name, package}).second;
    for (auto const & [mark, field] : {std::pair(':', "Architecture"), std::pair('=', "Version")}) {
        if (!isAdded) {
            name.append(1, mark).append(field_text(paragraph, field));
            isAdded = inventory.insert({name, package}).second;
        }
    }
    if (!isAdded) {
        file.fail(paragraph.front().line, "the same package for the second time");
    }
}

} // namespace

AttributeMap read_inventory(ControlFile & file) {
    auto const infoFolder = std::filesystem::path(file.path()).replace_filename("info");
    MutableAttributeMap inventory;
    Paragraph paragraph;
    while (file.next_paragraph(paragraph)) {
        MutableAttributeMap package = to_package(file, paragraph);
        add_list_time(package, paragraph, infoFolder);
        add_package(inventory, file, paragraph, package);
    }
    return inventory;
}

} // namespace inventory
