#include "vxattribute/attribute_value_type.h"

#include "vxattribute/error_codes.h"
#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"

#include <ostream>

namespace vxattribute {

namespace {

/// Type numbers are indexes of tables, so they must count from 1 without a gap.
constexpr bool are_numbers_without_gaps() {
    int next = 1;
#define VX_ELEMENT_TYPE(number, ...)                                                               \
    if (number != next++) {                                                                        \
        return false;                                                                              \
    }
#include "vxattribute/element_type_table.inc"
#undef VX_ELEMENT_TYPE
    return true;
}

static_assert(are_numbers_without_gaps());

} // namespace

ValueTypeId const & ValueTypeId::from_id(EId id) {
    static ValueTypeId const * const types[] = {
        &typeNull,
#define VX_ELEMENT_TYPE(number, Id, ...) &type##Id,
#include "vxattribute/element_type_table.inc"
#undef VX_ELEMENT_TYPE
    };
    if (id < 0 || id >= count) {
        impl::throw_unknown_type_id(id);
    }
    return *types[id];
}

std::ostream & operator<<(std::ostream & stream, ValueTypeId const & type) {
    return stream << type.name();
}

void impl::throw_unknown_type_id(int id) {
    vxcore::ErrorComposer("Unknown attribute type id.  Value={@typeId}")
        .param("typeId", vxcore::to_string(id))
        .throw_error(error::vxattribute_value_type_unknown,
                     VXCORE_LOCATION("vxattribute::ValueTypeId::from_id()"));
}

} // namespace vxattribute
