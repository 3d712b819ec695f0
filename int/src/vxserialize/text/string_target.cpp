#include "vxserialize/string_target.h"

namespace vxserialize {

void StringTarget::write_char(char c) {
    m_text.push_back(c);
}

void StringTarget::write_data(char const * data, unsigned int size) {
    m_text.append(data, size);
}

} // namespace vxserialize
