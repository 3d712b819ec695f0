#include "vxattribute/map_path.h"

#include "vxattribute/elements.h"
#include "vxattribute/error_codes.h"
#include "vxattribute/make_value.h"
#include "vxattribute/map/path_steps_internal.h"
#include "vxcore/error_composer.h"

#include <algorithm>
#include <charconv>

namespace vxattribute {

namespace {

using impl::PathSteps;

/// Finds the map of `value` in which the path continues and sets `index` to its position. A single
/// map uses no step of the path. Several maps use one step, the index. False when there is no such
/// map.
bool index_of_map(AttributeValue const & value, PathSteps & steps, unsigned int & index) {
    index = 0;
    if (value.type() != ValueTypeId::typeAttributeMap || value.empty()) {
        return false;
    }
    if (value.size() == 1) {
        return true;
    }
    if (steps.at_end()) {
        return false;
    }
    std::string_view const step = steps.next();
    char const * const last = step.data() + step.size();
    auto const [end, error] = std::from_chars(step.data(), last, index);
    return error == std::errc() && end == last && index < value.size();
}

/// `set_step` recurses, so the depth is limited. Streams could not carry more nested maps either.
constexpr std::ptrdiff_t maxSlashes = 255;

[[noreturn]] void throw_no_way(std::string_view path) {
    vxcore::ErrorComposer("The path '{@path}' leads through what is not a map, or too deep")
        .param("path", std::string(path))
        .throw_error(error::vxattribute_map_attributeNotFound,
                     VXCORE_LOCATION("vxattribute::set_path()"));
}

/// Sets the value at the rest of the path. Each map on the path is copied, changed and put back, so
/// a failure at any depth leaves all of them as they were. `add` is the last step of each level.
void set_step(MutableAttributeMap & map, PathSteps steps, std::string_view path,
              AttributeValue & value) {
    AttributeName const name(impl::name_of_step(steps.next()));
    if (steps.at_end()) {
        map.add(name, std::move(value));
        return;
    }
    AttributeValue const * const present = std::as_const(map).query_ptr(name);
    if (present == nullptr) {
        MutableAttributeMap inner;
        set_step(inner, steps, path, value);
        map.add(name, AttributeValue(inner));
        return;
    }
    unsigned int index = 0;
    if (!index_of_map(*present, steps, index) || steps.at_end()) {
        throw_no_way(path);
    }
    std::span<AttributeMap const> const maps = elements<AttributeMap>(*present);
    std::vector<AttributeMap> copies(maps.begin(), maps.end());
    MutableAttributeMap inner(copies[index]);
    set_step(inner, steps, path, value);
    copies[index] = AttributeMap(std::move(inner));
    map.add(name, make_list(std::span<AttributeMap const>(copies)));
}

} // namespace

AttributeValue const * find_path(AttributeMapBase const & map, std::string_view path) {
    AttributeMapBase const * inner = &map;
    PathSteps steps(path);
    while (true) {
        // A name that is not interned is in no map. The search then ends without interning it.
        AttributeName name;
        AttributeValue const * const value =
            AttributeName::find_interned(impl::name_of_step(steps.next()), name)
                ? inner->query_ptr(name)
                : nullptr;
        if (value == nullptr || steps.at_end()) {
            return value;
        }
        unsigned int index = 0;
        if (!index_of_map(*value, steps, index) || steps.at_end()) {
            return nullptr;
        }
        inner = value->begin<AttributeMap>() + index;
    }
}

void set_path(MutableAttributeMap & map, std::string_view path, AttributeValue value) {
    if (std::ranges::count(path, '/') > maxSlashes) {
        throw_no_way(path);
    }
    set_step(map, PathSteps(path), path, value);
}

std::string path_step(std::string_view name) {
    std::string step;
    for (char const c : name) {
        if (c == '~' || c == '/') {
            step += c == '~' ? "~0" : "~1";
        } else {
            step += c;
        }
    }
    return step;
}

} // namespace vxattribute
