#pragma once

#include "vxattribute/vxattribute.h"

#include <map>
#include <memory>
#include <variant>
#include <vector>

/// What values and maps mean, in standard containers: no sharing, no writing in place.
namespace vxfuzz {

struct PlainValue;
using PlainMap = std::map<vxattribute::AttributeName, PlainValue>;

/// A map as an element, which does not change any more.
struct PlainMapElement {
    std::shared_ptr<PlainMap const> map;
    std::size_t weight; // elements at all depths
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

std::size_t weight(PlainMap const & map);

/// A copy of the map as an element.
PlainMapElement plain_element(PlainMap const & map);

/// The documented order and equality of values.
int compare(PlainValue const & a, PlainValue const & b);
int compare(PlainMap const & a, PlainMap const & b);
bool equal(PlainValue const & a, PlainValue const & b);
bool equal(PlainMap const & a, PlainMap const & b);

/// Whether the value is what the model says, element by element.
bool agrees(vxattribute::AttributeValue const & value, PlainValue const & plain);
bool agrees(vxattribute::AttributeMapBase const & map, PlainMap const & plain);

/// A value and a map of just that content, which share nothing with others.
vxattribute::AttributeValue rebuild(PlainValue const & plain);
vxattribute::AttributeMap rebuild(PlainMap const & plain);

} // namespace vxfuzz
