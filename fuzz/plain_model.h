#pragma once

#include "vxattribute/vxattribute.h"

#include <map>
#include <memory>
#include <variant>
#include <vector>

/// Models of values and maps made of standard containers, which share nothing that changes.
namespace vxfuzz {

struct PlainValue;
using PlainMap = std::map<vxattribute::AttributeName, PlainValue>;

/// A map as an element. It never changes, so copies share it.
struct PlainMapElement {
    std::shared_ptr<PlainMap const> map;
    std::size_t weight; // weight(*map)
};

using PlainElement =
    std::variant<bool, long long, std::string, double, vxcore::Uuid, vxuri::UriReference,
                 vxcore::AbsoluteTime, vxcore::RelativeTime, vxcore::SimpleDateTime,
                 vxattribute::BinaryValue, vxattribute::SerializedValue, vxattribute::SecuredValue,
                 vxattribute::impl::ErrorInfoPtr, PlainMapElement>;

struct PlainValue {
    /// A null value has type 0 and no elements.
    int type = vxattribute::ValueTypeId::eId_Null;
    std::vector<PlainElement> elements;
};

/// Counts the map, its attributes and its elements, at all depths.
std::size_t weight(PlainMap const & map);

/// Copies a map into an element.
PlainMapElement plain_element(PlainMap const & map);

/// Compare by the documented order and equality of values and maps.
int compare(PlainValue const & a, PlainValue const & b);
int compare(PlainMap const & a, PlainMap const & b);
bool equal(PlainValue const & a, PlainValue const & b);
bool equal(PlainMap const & a, PlainMap const & b);

/// Return true when the value or map matches its model, element by element.
bool agrees(vxattribute::AttributeValue const & value, PlainValue const & plain);
bool agrees(vxattribute::AttributeMapBase const & map, PlainMap const & plain);

/// Make a new value or map of that content, which shares nothing with others.
vxattribute::AttributeValue rebuild(PlainValue const & plain);
vxattribute::AttributeMap rebuild(PlainMap const & plain);

} // namespace vxfuzz
