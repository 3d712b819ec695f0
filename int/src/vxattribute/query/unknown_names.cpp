#include "vxattribute/unknown_names.h"

#include "vxattribute/map/path_steps_internal.h"
#include "vxattribute/query/unknown_names_internal.h"

#include <algorithm>

namespace vxattribute {

std::vector<AttributeName> unknown_names(AttributeMapBase const & config,
                                         std::span<Query const> queries) {
    std::unordered_set<AttributeName> known;
    for (Query const & query : queries) {
        for (AttributeName const & name : query.names()) {
            known.insert(query.uses_paths() ? impl::names_of_path(name.value()).front() : name);
        }
    }
    return impl::names_outside(config, known);
}

std::vector<AttributeName> impl::names_outside(AttributeMapBase const & map,
                                               std::unordered_set<AttributeName> const & known) {
    std::vector<AttributeName> unknown;
    for (auto const & [name, value] : map) {
        if (!known.contains(name)) {
            unknown.push_back(name);
        }
    }
    std::ranges::sort(unknown, {}, [](AttributeName const & name) -> std::string const & {
        return name.value();
    });
    return unknown;
}

} // namespace vxattribute
