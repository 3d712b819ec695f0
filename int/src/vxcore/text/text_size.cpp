#include "vxcore/text_size.h"

#include <stdexcept>

namespace vxcore {

void throw_text_too_long() {
    throw std::length_error("vxcore: a text may have at most 4294967295 bytes");
}

} // namespace vxcore
