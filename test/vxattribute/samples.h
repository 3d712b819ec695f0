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

/// Returns an undefined reference that has a text, as only handmade parse data can produce.
vxuri::UriReference undefined_uri(std::string text);

/// Returns a copy that shares nothing with its source.
vxattribute::AttributeValue deep_copy(vxattribute::AttributeValue const & value);

} // namespace vxtest
