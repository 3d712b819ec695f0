#include "vxattribute/map_path.h"
#include "vxattribute/settings/setting_text_internal.h"

#include <algorithm>
#include <array>
#include <limits>

namespace vxattribute {

namespace {

/// The columns before the description, and the description.
struct Row {
    std::array<std::string, 3> cells;
    std::string description;
};

/// Whether a limit is that of an integer type of a program, which tells people nothing.
bool is_noise(AttributeValue const & limit) {
    if (limit.type() != ValueTypeId::typeInteger) {
        return limit.is_null();
    }
    long long const number = limit.get<long long>();
    return number == std::numeric_limits<int>::min() || number == std::numeric_limits<int>::max() ||
           number == std::numeric_limits<unsigned int>::max();
}

AttributeValue told(AttributeValue const & limit) {
    return is_noise(limit) ? AttributeValue::null : limit;
}

std::string type_cell(Setting const & setting) {
    std::string const type = impl::type_text(setting);
    bool const isList = setting.maxCount > 1 && setting.type != ValueTypeId::eId_Null;
    return isList ? "list of " + type : type;
}

std::string default_cell(Setting const & setting) {
    if (setting.isRequired) {
        return "(required)";
    }
    bool const isShown = !setting.isSecret && setting.type != ValueTypeId::eId_AttributeMap;
    return isShown ? impl::short_text(setting.defaultValue) : std::string();
}

/// The description with the rules that the other columns do not show.
std::string description_cell(Setting const & setting) {
    std::string text = setting.description;
    std::string const range = impl::range_text(told(setting.minimum), told(setting.maximum));
    for (std::string const & rule : {range, impl::choices_text(setting)}) {
        if (!rule.empty()) {
            text += (text.empty() ? "(" : " (") + rule + ")";
        }
    }
    return text;
}

/// Appends a row for each setting at every depth. A group of paths has no row of its own.
void collect_rows(Settings const & settings, std::string const & prefix, std::vector<Row> & rows) {
    for (Setting const & setting : settings.entries()) {
        std::string const path = prefix + path_step(setting.name.value());
        if (!setting.isGroup) {
            rows.push_back(
                {{path, type_cell(setting), default_cell(setting)}, description_cell(setting)});
        }
        if (setting.nested) {
            collect_rows(*setting.nested, path + (setting.maxCount > 1 ? "/*/" : "/"), rows);
        }
    }
}

/// Appends the text, with line breaks at blanks so that each line has at most `width` bytes if its
/// words do. Lines after the first are indented.
void append_wrapped(std::string & target, std::string_view text, std::size_t width,
                    std::size_t indent) {
    while (text.size() > width) {
        std::size_t cut = text.rfind(' ', width);
        if (cut == text.npos) {
            cut = text.find(' ', width);
        }
        if (cut == text.npos) {
            break;
        }
        target.append(text.substr(0, cut)).append("\n").append(indent, ' ');
        text.remove_prefix(cut + 1);
    }
    target += text;
}

} // namespace

std::string Settings::describe(unsigned int width) const {
    constexpr std::size_t gap = 2;
    constexpr std::size_t minDescription = 20;

    std::vector<Row> rows = {{{"NAME", "TYPE", "DEFAULT"}, "DESCRIPTION"}};
    collect_rows(*this, "", rows);
    std::array<std::size_t, 3> widths{};
    std::size_t indent = 0;
    for (std::size_t column = 0; column < widths.size(); ++column) {
        for (Row const & row : rows) {
            widths[column] = std::max(widths[column], row.cells[column].size() + gap);
        }
        indent += widths[column];
    }
    std::size_t const rest = width > indent + minDescription ? width - indent : minDescription;
    std::string table;
    for (Row const & row : rows) {
        for (std::size_t column = 0; column < widths.size(); ++column) {
            table += row.cells[column];
            table.append(widths[column] - row.cells[column].size(), ' ');
        }
        append_wrapped(table, row.description, rest, indent);
        table.erase(table.find_last_not_of(' ') + 1); // no description, or no default either
        table += '\n';
    }
    return table;
}

} // namespace vxattribute
