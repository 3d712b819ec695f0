#include "vxattribute/value/typed_value_internal.h"

namespace vxattribute::impl {

unsigned int ValueTypeTraits<std::string>::hash(std::string const & a) noexcept {
    return vxcore::hash_bytes(a);
}

} // namespace vxattribute::impl

VXATTRIBUTE_INSTANTIATE_ELEMENT(std::string);
