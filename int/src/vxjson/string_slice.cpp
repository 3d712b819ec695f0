#include "vxjson/string_slice.h"

#include <stdexcept>

namespace vxjson {

void throw_slice_range() {
    throw std::out_of_range("StringSlice");
}

} // namespace vxjson
