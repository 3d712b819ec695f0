#include "vxcore/string_source.h"

#include <algorithm>

namespace vxcore {

unsigned int StringSource::read(void * buffer, unsigned int size) {
    m_rest.copy(static_cast<char *>(buffer), size);
    return skip(size);
}

unsigned int StringSource::skip(unsigned int size) {
    std::size_t const skipped = std::min<std::size_t>(size, m_rest.size());
    m_rest.remove_prefix(skipped);
    return static_cast<unsigned int>(skipped);
}

long long StringSource::size() const {
    return static_cast<long long>(m_rest.size());
}

} // namespace vxcore
