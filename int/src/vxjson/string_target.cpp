#include "vxjson/string_target.h"

namespace vxjson {

void StringTarget::write_data(char const * data, unsigned int size) {
    m_text.append(data, size);
}

} // namespace vxjson
