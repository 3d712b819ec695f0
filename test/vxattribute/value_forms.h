#pragma once

#include "support/streams.h"

#include "vxattribute/vxattribute.h"

/// Converts values to and from the bytes of either form.
namespace vxtest {

inline std::string write_binary(vxattribute::AttributeValue const & value) {
    return write_binary_form([&](Writer & w) { write_attribute_value(w, value); });
}

inline std::string write_text(vxattribute::AttributeValue const & value) {
    return write_text_form([&](Writer & w) { write_attribute_value(w, value); });
}

inline void read_binary(std::string const & bytes, vxattribute::AttributeValue & target) {
    MemoryReader reader(list_of(bytes));
    read_attribute_value(reader, target);
}

inline void read_text(std::string const & text, vxattribute::AttributeValue & target) {
    read_text_form(
        text, [&](Reader & reader) { read_attribute_value(reader, target); }, 32, false);
}

} // namespace vxtest
