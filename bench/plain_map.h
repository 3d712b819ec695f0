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

/// The naive choice: what one writes without a library.
using PlainMap = std::map<std::string, PlainValue>;

struct PlainValue {
    using Data = std::variant<std::monostate, bool, long long, double, std::string, Bytes,
                              PlainList, PlainMap>;
    Data data;

    friend bool operator==(PlainValue const & a, PlainValue const & b) = default;
};

/// The same data in plain types: times as ticks, a UUID as its bytes, a reference as its text. A
/// value of one element becomes the element, of none or several a list.
PlainMap to_plain(vxattribute::AttributeMapBase const & map);

} // namespace vxbench
