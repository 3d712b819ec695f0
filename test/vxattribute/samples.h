#pragma once

#include "vxattribute/vxattribute.h"

#include <memory>
#include <string>
#include <vector>

/// One row per element type and size, for rules that hold for all of them.
namespace vxtest {

struct Sample {
    char const * name;
    vxattribute::AttributeValue value;
    /// Changes a value of this sample's type so that it is equal to no sample.
    void (*change)(vxattribute::AttributeValue &);
};

/// Scalars, lists and empty values of every type. No NaN: it equals nothing.
std::vector<Sample> samples();

/// A reference that has a text although it is undefined, as only parse data made by hand can be.
vxuri::UriReference undefined_uri(std::string text);

/// A copy that shares nothing with its source.
vxattribute::AttributeValue deep_copy(vxattribute::AttributeValue const & value);

} // namespace vxtest
