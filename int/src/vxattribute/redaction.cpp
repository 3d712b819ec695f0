#include "vxattribute/redaction.h"

#include "vxattribute/elements.h"
#include "vxattribute/make_value.h"

#include <optional>
#include <unordered_set>
#include <vector>

namespace vxattribute {

namespace {

using Names = std::unordered_set<AttributeName>;

/// Null where there is nothing to hide, so that the original can be shared.
std::optional<AttributeMap> redacted_map(AttributeMapBase const & map, Names const & names);

std::optional<AttributeValue> redacted_maps(AttributeValue const & value, Names const & names) {
    std::span<AttributeMap const> const maps = elements<AttributeMap>(value);
    std::vector<AttributeMap> copies(maps.begin(), maps.end());
    bool isChanged = false;
    for (AttributeMap & map : copies) {
        if (std::optional<AttributeMap> copy = redacted_map(map, names)) {
            map.swap(*copy);
            isChanged = true;
        }
    }
    if (!isChanged) {
        return std::nullopt;
    }
    return make_list(std::span<AttributeMap const>(copies));
}

std::optional<AttributeMap> redacted_map(AttributeMapBase const & map, Names const & names) {
    MutableAttributeMap copy(map);
    bool isChanged = false;
    for (auto const & [name, value] : map) {
        std::optional<AttributeValue> instead;
        if (names.contains(name)) {
            instead = "(redacted)";
        } else if (value.type() == ValueTypeId::typeAttributeMap) {
            instead = redacted_maps(value, names);
        }
        if (instead) {
            copy.add(name, std::move(*instead));
            isChanged = true;
        }
    }
    if (!isChanged) {
        return std::nullopt;
    }
    return AttributeMap(std::move(copy));
}

} // namespace

AttributeMap redacted(AttributeMapBase const & map, std::span<AttributeName const> names) {
    return redacted_map(map, Names(names.begin(), names.end())).value_or(AttributeMap(map));
}

} // namespace vxattribute
