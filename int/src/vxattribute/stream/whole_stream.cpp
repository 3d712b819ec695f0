#include "vxattribute/error_codes.h"
#include "vxattribute/stream/whole_stream_internal.h"
#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"

namespace vxattribute::impl {

void PlainNameDecoder::read_decoder_mappings(vxserialize::Reader &) {}

// The id of a package precedes the first of its names, and is the only UUID in place of a name.
AttributeName PlainNameDecoder::read_attribute_name(vxserialize::Reader & reader) {
    if (reader.next_type() == vxserialize::eElement_Uuid) {
        vxcore::throw_error(
            vxcore::ErrorComposer("The names are written as numbers of attribute name packages, "
                                  "and no packages are given to read them with")
                .create(vxserialize::error::vxserialize_data_type,
                        VXCORE_LOCATION("vxattribute::impl::PlainNameDecoder"
                                        "::read_attribute_name()"),
                        m_failure));
    }
    return AttributeName(reader.read_string_key());
}

AttributeMap only_map(AttributeValue const & value) {
    if (!(value.type() == ValueTypeId::typeAttributeMap)) {
        vxcore::ErrorComposer("Expected one map and found a value of type '{@actualType}'")
            .param("actualType", value.type().name())
            .throw_error(error::vxattribute_value_type_mismatch,
                         VXCORE_LOCATION("vxattribute::impl::only_map()"));
    }
    if (value.size() != 1) {
        vxcore::ErrorComposer("Expected one map and found a list of {@cardinality} maps")
            .param("cardinality", vxcore::to_string(value.size()))
            .throw_error(error::vxattribute_value_cardinality_expectSingle,
                         VXCORE_LOCATION("vxattribute::impl::only_map()"));
    }
    return value.get<AttributeMap>();
}

} // namespace vxattribute::impl
