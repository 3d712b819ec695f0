#include "vxattribute/elements.h"
#include "vxattribute/setting_values_impl.h"
#include "vxattribute/settings/setting_text_internal.h"
#include "vxattribute/trace/text_stream_internal.h"
#include "vxcore/default_floating_point.h"
#include "vxcore/streamers.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace vxattribute::impl {

namespace {

constexpr unsigned int maxShown = 64; // bytes of a text
constexpr std::size_t maxElements = 8;

/// The shortest text that reads as the same number.
void write_double(TextStream & stream, double number) {
    vxcore::impl::DefaultFloatingPoint const environment;
    std::array<char, 32> text;
    auto const end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
    stream << std::string_view(text.data(), static_cast<std::size_t>(end - text.data()));
}

template <typename T>
void write_element(TextStream & stream, T const & element) {
    if constexpr (std::is_same_v<T, std::string>) {
        stream << vxcore::streamers::String(element, maxShown, '"');
    } else if constexpr (std::is_same_v<T, bool>) {
        stream << vxcore::streamers::Boolean(element);
    } else if constexpr (std::is_same_v<T, double>) {
        write_double(stream, element);
    } else if constexpr (std::is_same_v<T, long long> || TextFormType<T>) {
        stream << element;
    } else {
        stream << ValueTypeTraits<T>::type();
    }
}

/// The least number of letters to add, drop, replace or swap with a neighbour to make `b` of `a`.
/// Each row counts for a prefix of `a`; column j counts for the first j letters of `b`.
std::size_t edit_distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> before(b.size() + 1);
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        row[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        before.swap(last);
        last.swap(row);
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            std::size_t const changed = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, changed});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                row[j] = std::min(row[j], before[j - 2] + 1);
            }
        }
    }
    return row[b.size()];
}

} // namespace

std::string short_text(AttributeValue const & value) {
    TextStream stream;
    visit_elements(value, [&stream](auto elements) {
        char const * separator = "";
        for (auto const & element : elements.first(std::min(elements.size(), maxElements))) {
            stream << separator;
            write_element(stream, element);
            separator = ", ";
        }
        stream << (elements.size() > maxElements ? ", ..." : "");
    });
    return std::move(stream).str();
}

std::string choices_text(Setting const & setting) {
    std::string text;
    for (std::string const & choice : setting.choices) {
        text += (text.empty() ? "" : ", ") + choice;
    }
    return text;
}

std::string range_text(AttributeValue const & minimum, AttributeValue const & maximum) {
    if (!minimum.is_null() && !maximum.is_null()) {
        return "from " + short_text(minimum) + " to " + short_text(maximum);
    }
    if (!minimum.is_null()) {
        return "at least " + short_text(minimum);
    }
    return maximum.is_null() ? std::string() : "at most " + short_text(maximum);
}

std::string type_text(Setting const & setting) {
    if (setting.type == ValueTypeId::eId_Null) {
        return "any";
    }
    return setting.acceptsIntegers ? "number" : ValueTypeId::from_id(setting.type).name();
}

AttributeName const * near_name(AttributeName const & misspelt, Settings const & settings) {
    constexpr std::size_t maxSize = 64;
    std::string const & text = misspelt.value();
    std::size_t nearest = (text.size() + 2) / 3 + 1;
    AttributeName const * result = nullptr;
    auto const compare = [&](AttributeName const & name) {
        std::size_t const distance =
            name.value().size() > maxSize ? nearest : edit_distance(text, name.value());
        if (distance < nearest) {
            nearest = distance;
            result = &name;
        }
    };
    if (text.size() <= maxSize) {
        for (Setting const & setting : settings.entries()) {
            compare(setting.name);
            std::ranges::for_each(setting.alternates, compare);
        }
    }
    return result;
}

} // namespace vxattribute::impl
