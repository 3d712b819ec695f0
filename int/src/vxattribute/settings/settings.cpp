#include "vxattribute/settings.h"

#include "vxattribute/elements.h"
#include "vxattribute/make_value.h"
#include "vxattribute/map/path_steps_internal.h"
#include "vxattribute/setting_values_impl.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace vxattribute {

namespace {

/// Calls `action` with each name of the settings.
template <typename Action>
void for_each_name(Setting const & setting, Action action) {
    action(setting.name);
    std::ranges::for_each(setting.alternates, action);
}

bool has_name(Setting const & setting, AttributeName const & name) {
    return setting.name == name || std::ranges::count(setting.alternates, name) != 0;
}

/// The nested maps of `value` with their defaults; `value` itself if it does not hold maps.
AttributeValue nested_with_defaults(Settings const & nested, AttributeValue const & value) {
    if (value.type() != ValueTypeId::typeAttributeMap) {
        return value;
    }
    std::vector<AttributeMap> maps;
    for (AttributeMap const & map : elements<AttributeMap>(value)) {
        maps.push_back(nested.with_defaults(map));
    }
    return make_list(std::span<AttributeMap const>(maps));
}

/// A limit as an integer: `round` is floor or ceil, so that the result is inside the range.
long long integer_limit(AttributeValue const & limit, double (*round)(double)) {
    if (limit.type() == ValueTypeId::typeInteger) {
        return limit.get<long long>();
    }
    constexpr double tooLarge = 9223372036854775808.0; // 2^63
    double const number = round(limit.get<double>());
    if (!(number >= -tooLarge)) {
        return std::numeric_limits<long long>::min();
    }
    return number < tooLarge ? static_cast<long long>(number)
                             : std::numeric_limits<long long>::max();
}

double double_limit(AttributeValue const & limit) {
    return limit.type() == ValueTypeId::typeInteger ? static_cast<double>(limit.get<long long>())
                                                    : limit.get<double>();
}

bool is_number(AttributeValue const & limit) {
    return limit.type() == ValueTypeId::typeInteger || limit.type() == ValueTypeId::typeDouble;
}

} // namespace

Settings::Settings(std::initializer_list<Setting> settings) {
    for (Setting const & setting : settings) {
        add(setting);
    }
}

std::span<Setting const> Settings::entries() const noexcept {
    return m_entries ? std::span<Setting const>(*m_entries) : std::span<Setting const>();
}

Settings & Settings::add(Setting setting) {
    bool const isOwn = m_entries && m_entries.use_count() == 1;
    auto const entries = isOwn ? m_entries
                               : std::make_shared<std::vector<Setting>>(this->entries().begin(),
                                                                        this->entries().end());
    auto const present = std::ranges::find(*entries, setting.name, &Setting::name);
    if (present != entries->end() && present->isGroup && setting.isGroup) {
        Settings merged = *present->nested;
        for (Setting const & inner : setting.nested->entries()) {
            merged.add(inner);
        }
        present->nested = std::move(merged);
    } else {
        for_each_name(setting, [&entries](AttributeName const & name) {
            if (std::ranges::any_of(*entries,
                                    [&](Setting const & other) { return has_name(other, name); })) {
                throw std::invalid_argument("vxattribute::Settings: two settings with the name " +
                                            name.value());
            }
        });
        entries->push_back(std::move(setting));
    }
    m_entries = entries;
    return *this;
}

AttributeMap Settings::with_defaults(AttributeMapBase const & config) const {
    MutableAttributeMap result(config);
    for (Setting const & setting : entries()) {
        AttributeValue const * const found = impl::find_setting(setting, config);
        AttributeValue value = found != nullptr ? *found : setting.defaultValue;
        if (setting.nested) {
            if (found == nullptr && value.is_null() && setting.isAlwaysChecked) {
                value = AttributeMap();
            }
            value = nested_with_defaults(*setting.nested, value);
        }
        if (found == nullptr && (value.is_null() || value == AttributeValue(AttributeMap()))) {
            continue;
        }
        for (AttributeName const & alternate : setting.alternates) {
            result.erase(alternate);
        }
        result.add(setting.name, std::move(value));
    }
    return result;
}

std::vector<AttributeName> Settings::secret_names() const {
    std::vector<AttributeName> names;
    for (Setting const & setting : entries()) {
        if (setting.isSecret) {
            for_each_name(setting, [&names](AttributeName const & name) { names.push_back(name); });
        } else if (setting.nested) {
            std::vector<AttributeName> const inner = setting.nested->secret_names();
            names.insert(names.end(), inner.begin(), inner.end());
        }
    }
    return names;
}

namespace impl {

Setting at_path(std::string_view path, Setting setting) {
    std::vector<AttributeName> const names = names_of_path(path);
    setting.name = names.back();
    for (auto name = names.rbegin() + 1; name != names.rend(); ++name) {
        Setting group{.name = *name, .type = ValueTypeId::eId_AttributeMap};
        group.isAlwaysChecked = true;
        group.isGroup = true;
        group.nested.emplace().add(std::move(setting));
        setting = std::move(group);
    }
    return setting;
}

NumberLimits::NumberLimits(Setting const & setting) {
    if (is_number(setting.minimum)) {
        areSet = true;
        lowest = integer_limit(setting.minimum, std::ceil);
        lowestDouble = double_limit(setting.minimum);
    }
    if (is_number(setting.maximum)) {
        areSet = true;
        highest = integer_limit(setting.maximum, std::floor);
        highestDouble = double_limit(setting.maximum);
    }
}

} // namespace impl
} // namespace vxattribute
