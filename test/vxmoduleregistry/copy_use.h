#pragma once

#include "vxattribute/attribute_value.h"

#include <cstddef>
#include <cstring>
#include <dlfcn.h>
#include <new>
#include <string_view>

/// Loads a copy of the library at run time.
inline void * load(char const * path, int mode = RTLD_LOCAL) {
    return dlopen(path, RTLD_NOW | mode);
}

/// Makes and drops values and maps with the code of that copy. Returns false when this is
/// impossible.
inline bool use(void * copy) {
    auto const parse = reinterpret_cast<vxattribute::AttributeValue (*)(std::string_view)>(dlsym(
        copy, "_ZN11vxattribute15value_from_jsonESt17basic_string_viewIcSt11char_traitsIcEE"));
    if (parse == nullptr) {
        return false;
    }
    using vxattribute::AttributeValue;
    alignas(AttributeValue) std::byte memory[sizeof(AttributeValue)];
    auto const * const value = ::new (memory)
        AttributeValue(parse(R"({"list": [1.5, 2], "inner": {"text": "of more than 15 bytes"}})"));
    bool const isRead = value->size() == 1;
    // The destructor compares with the null value, which only a program that is linked with the
    // library has.
    vxattribute::impl::ValueBase * content;
    std::memcpy(&content, memory, sizeof content);
    content->release();
    return isRead;
}
