#include "vxattribute/attribute_value_type.h"

#include "vxattribute/error_codes.h"
#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"

#include <ostream>

namespace vxattribute {

ValueTypeId const & ValueTypeId::from_id(EId id) {
    static ValueTypeId const * const types[] = {
        &typeNull,   &typeBoolean,    &typeInteger,      &typeString,       &typeDouble,
        &typeUuid,   &typeUri,        &typeAbsoluteTime, &typeRelativeTime, &typeSimpleDateTime,
        &typeBinary, &typeSerialized, &typeAttributeMap, &typeSecured,      &typeErrorInfo,
    };
    if (id < eId_Null || id > eId_ErrorInfo) {
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
