#include "vxattribute/value/typed_value_internal.h"
#include "vxcore/text_size.h"

#include <cstring>

namespace vxattribute::impl {

ValueTypeTraits<std::string>::AssignArg::AssignArg(char const * text)
    : data(text), size(vxcore::text_size(std::strlen(text))) {}

ValueTypeTraits<std::string>::AssignArg::AssignArg(std::string const & text)
    : data(text.data()), size(vxcore::text_size(text.size())) {}

unsigned int ValueTypeTraits<std::string>::hash(std::string const & a) noexcept {
    return vxcore::hash_bytes(a);
}

} // namespace vxattribute::impl

VXATTRIBUTE_INSTANTIATE_ELEMENT(std::string);
