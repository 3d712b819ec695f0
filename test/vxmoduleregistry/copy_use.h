#pragma once

#include "vxattribute/attribute_value.h"

#include <dlfcn.h>
#include <string_view>

/// A copy of the library, loaded at run time.
inline void * load(char const * path, int mode = RTLD_LOCAL) {
    return dlopen(path, RTLD_NOW | mode);
}

/// Makes and drops values and maps by that copy's own code; false when that cannot be done.
inline bool use(void * copy) {
    auto const parse = reinterpret_cast<vxattribute::AttributeValue (*)(std::string_view)>(dlsym(
        copy, "_ZN11vxattribute15value_from_jsonESt17basic_string_viewIcSt11char_traitsIcEE"));
    return parse != nullptr &&
           parse(R"({"list": [1.5, 2], "inner": {"text": "of more than 15 bytes"}})").size() == 1;
}
