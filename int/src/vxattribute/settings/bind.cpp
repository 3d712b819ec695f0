#include "vxattribute/bind_impl.h"
#include "vxattribute/error_codes.h"
#include "vxattribute/map/nested_maps_internal.h"
#include "vxattribute/map/path_steps_internal.h"
#include "vxcore/error_composer.h"

#include <stdexcept>

namespace vxattribute::impl {

void throw_problems(Settings const & settings, AttributeMapBase const & map) {
    settings.check(map);
    throw std::logic_error("vxattribute::Binding::read(): no problem was found");
}

void throw_not_writable(char const * what, std::string const & value) {
    vxcore::ErrorComposer("The value {@value} {@what}")
        .param("value", value)
        .param("what", what)
        .throw_error(error::vxattribute_query_badValue,
                     VXCORE_LOCATION("vxattribute::Binding::write()"));
}

AttributeMap undescribed(AttributeMapBase const & map, Settings const & settings) {
    MutableAttributeMap rest(map);
    for (Setting const & setting : settings.entries()) {
        rest.erase(setting.name);
        for (AttributeName const & alternate : setting.alternates) {
            rest.erase(alternate);
        }
        AttributeValue const & value = map.query(setting.name);
        if (setting.isGroup && scalar_map(value) != nullptr) {
            AttributeMap const inner = undescribed(*scalar_map(value), *setting.nested);
            if (!inner.empty()) {
                rest.add(setting.name, inner);
            }
        }
    }
    return rest;
}

void adopt_defaults(Settings & settings, AttributeMapBase const & defaults) {
    Settings result;
    result.allow_unknown(settings.allows_unknown());
    for (Setting setting : settings.entries()) {
        AttributeValue const & value = defaults.query(setting.name);
        if (setting.isAlwaysChecked && scalar_map(value) != nullptr) {
            adopt_defaults(*setting.nested, *scalar_map(value));
        } else if (!setting.isRequired) {
            setting.defaultValue = value;
        }
        result.add(std::move(setting));
    }
    settings = std::move(result);
}

void set_nested(AttributeMap & map, std::span<AttributeName const> parents,
                AttributeName const & name, AttributeValue value) {
    if (parents.empty()) {
        WritableAttributeMapRef(map).add(name, std::move(value));
        return;
    }
    AttributeMap inner;
    if (AttributeMap const * const present = scalar_map(map.query(parents.front()))) {
        inner = *present;
    }
    set_nested(inner, parents.subspan(1), name, std::move(value));
    WritableAttributeMapRef(map).add(parents.front(), AttributeValue(inner));
}

bool descend(AttributeMapBase const *& map, std::span<AttributeName const> parents) {
    for (AttributeName const & parent : parents) {
        AttributeValue const * const value = map->query_ptr(parent);
        map = value != nullptr ? scalar_map(*value) : nullptr;
        if (map == nullptr) {
            return value == nullptr;
        }
    }
    return true;
}

std::vector<AttributeName> names_of(std::string_view path) {
    return names_of_path(path);
}

} // namespace vxattribute::impl
