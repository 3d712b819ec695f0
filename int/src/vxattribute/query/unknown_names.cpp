#include "vxattribute/unknown_names.h"

#include "vxattribute/map/path_steps_internal.h"

#include <algorithm>
#include <unordered_set>

namespace vxattribute {

std::vector<AttributeName> unknown_names(AttributeMapBase const & config,
                                         std::span<Query const> queries) {
    std::unordered_set<AttributeName> known;
    for (Query const & query : queries) {
        for (AttributeName const & name : query.names()) {
            known.insert(query.uses_paths() ? impl::names_of_path(name.value()).front() : name);
        }
    }
    std::vector<AttributeName> unknown;
    for (auto const & [name, value] : config) {
        if (!known.contains(name)) {
            unknown.push_back(name);
        }
    }
    // By bytes: map order differs between processes.
    std::ranges::sort(unknown, {}, [](AttributeName const & name) -> std::string const & {
        return name.value();
    });
    return unknown;
}

} // namespace vxattribute
