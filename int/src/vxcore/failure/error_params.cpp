#include "vxcore/error_params.h"

namespace vxcore {

std::string & ErrorParams::insert_ref(SourceString key) {
    return m_values[std::move(key)];
}

ErrorParams::const_iterator ErrorParams::find(SourceString const & key) const {
    return m_values.find(key);
}

std::string const * ErrorParams::find_value(std::string_view name) const {
    auto const found = m_values.find(name);
    return found == m_values.end() ? nullptr : &found->second;
}

} // namespace vxcore
