#include "sealed_values.h"

#include "vxattribute/elements.h"
#include "vxattribute/make_value.h"
#include "vxattribute/map_path.h"
#include "vxattribute/sorted_by_name.h"
#include "vxcore/text_conversion.h"

namespace vxattr {

using namespace vxattribute;

namespace {

std::string joined(std::string const & path, std::string const & step) {
    return path.empty() ? step : path + '/' + step;
}

/// The path of one of several elements.
std::string element_path(AttributeValue const & value, std::string const & path,
                         std::size_t index) {
    return value.size() == 1
               ? path
               : joined(path, vxcore::to_string(static_cast<unsigned long long>(index)));
}

AttributeMap replace_in_map(AttributeMap const & map, std::string const & path,
                            ReplaceSealed const & replace, unsigned long long & count) {
    MutableAttributeMap result(map);
    unsigned long long const before = count;
    for (auto const & element : sorted_by_name(map)) {
        unsigned long long const beforeElement = count;
        AttributeValue value = replace_sealed(
            element->second, joined(path, path_step(element->first.value())), replace, count);
        if (count != beforeElement) {
            result.add(element->first, std::move(value));
        }
    }
    return count == before ? map : AttributeMap(std::move(result));
}

template <typename T, typename Replace>
AttributeValue replace_elements(AttributeValue const & value, std::string const & path,
                                Replace const & replace) {
    std::vector<T> replaced;
    for (T const & element : elements<T>(value)) {
        replaced.push_back(replace(element_path(value, path, replaced.size()), element));
    }
    return make_list(std::span<T const>(replaced));
}

} // namespace

/// Maps out of files nest no deeper than readers let them, so the recursion has an end.
AttributeValue replace_sealed(AttributeValue const & value, std::string const & path,
                              ReplaceSealed const & replace, unsigned long long & count) {
    if (value.type() == ValueTypeId::typeSecured) {
        count += value.size();
        return replace_elements<SecuredValue>(value, path, replace);
    }
    if (value.type() != ValueTypeId::typeAttributeMap) {
        return value;
    }
    unsigned long long const before = count;
    AttributeValue result = replace_elements<AttributeMap>(
        value, path, [&](std::string const & elementPath, AttributeMap const & map) {
            return replace_in_map(map, elementPath, replace, count);
        });
    return count == before ? value : result;
}

} // namespace vxattr
