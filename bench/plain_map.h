#pragma once

#include "vxattribute/attribute_map.h"

#include <map>
#include <string>
#include <variant>
#include <vector>

namespace vxbench {

struct PlainValue;
using Bytes = std::vector<unsigned char>;
using PlainList = std::vector<PlainValue>;

/// The naive map, as one writes it without a library.
using PlainMap = std::map<std::string, PlainValue>;

struct PlainValue {
    using Data = std::variant<std::monostate, bool, long long, double, std::string, Bytes,
                              PlainList, PlainMap>;
    Data data;

    friend bool operator==(PlainValue const & a, PlainValue const & b) = default;
};

/// Converts a map to plain types: a time to its ticks, a UUID to its bytes, a reference to its
/// text. A value of one element becomes that element; a value of none or several becomes a list.
PlainMap to_plain(vxattribute::AttributeMapBase const & map);

} // namespace vxbench
