#include "vxattribute/error_codes.h"

namespace vxattribute::error {

constinit vxcore::ErrorCode const vxattribute("error.vxattribute", true);
constinit vxcore::ErrorCode const vxattribute_invalidParameter("error.vxattribute.invalidParameter",
                                                               true);
constinit vxcore::ErrorCode const vxattribute_map("error.vxattribute.map", true);
constinit vxcore::ErrorCode const
    vxattribute_map_attributeNotFound("error.vxattribute.map.attributeNotFound", true);
constinit vxcore::ErrorCode const vxattribute_name("error.vxattribute.name", true);
constinit vxcore::ErrorCode const vxattribute_name_decoder("error.vxattribute.name.decoder", true);
constinit vxcore::ErrorCode const
    vxattribute_name_decoder_packageRef("error.vxattribute.name.decoder.packageRef", true);
constinit vxcore::ErrorCode const
    vxattribute_name_decoder_packageRef_invalid("error.vxattribute.name.decoder.packageRef.invalid",
                                                true);
constinit vxcore::ErrorCode const
    vxattribute_name_decoder_packageRef_unknown("error.vxattribute.name.decoder.packageRef.unknown",
                                                true);
constinit vxcore::ErrorCode const
    vxattribute_name_decoder_unknownIndex("error.vxattribute.name.decoder.unknownIndex", true);
constinit vxcore::ErrorCode const vxattribute_name_package("error.vxattribute.name.package", true);
constinit vxcore::ErrorCode const
    vxattribute_name_package_duplicateName("error.vxattribute.name.package.duplicateName", true);
constinit vxcore::ErrorCode const
    vxattribute_name_package_serialization("error.vxattribute.name.package.serialization", true);
constinit vxcore::ErrorCode const vxattribute_query("error.vxattribute.query", true);
constinit vxcore::ErrorCode const vxattribute_query_badValue("error.vxattribute.query.badValue",
                                                             true);
constinit vxcore::ErrorCode const vxattribute_query_notFound("error.vxattribute.query.notFound",
                                                             true);
constinit vxcore::ErrorCode const vxattribute_query_settings("error.vxattribute.query.settings",
                                                             true);
constinit vxcore::ErrorCode const vxattribute_query_tooFew("error.vxattribute.query.tooFew", true);
constinit vxcore::ErrorCode const vxattribute_query_tooMany("error.vxattribute.query.tooMany",
                                                            true);
constinit vxcore::ErrorCode const
    vxattribute_query_typeConversion("error.vxattribute.query.typeConversion", true);
constinit vxcore::ErrorCode const
    vxattribute_query_unknownName("error.vxattribute.query.unknownName", true);
constinit vxcore::ErrorCode const vxattribute_value("error.vxattribute.value", true);
constinit vxcore::ErrorCode const vxattribute_value_binary("error.vxattribute.value.binary", true);
constinit vxcore::ErrorCode const
    vxattribute_value_binary_size("error.vxattribute.value.binary.size", true);
constinit vxcore::ErrorCode const
    vxattribute_value_cardinality("error.vxattribute.value.cardinality", true);
constinit vxcore::ErrorCode const
    vxattribute_value_cardinality_expectNonzero("error.vxattribute.value.cardinality.expectNonzero",
                                                true);
constinit vxcore::ErrorCode const
    vxattribute_value_cardinality_expectSingle("error.vxattribute.value.cardinality.expectSingle",
                                               true);
constinit vxcore::ErrorCode const vxattribute_value_conversion("error.vxattribute.value.conversion",
                                                               true);
constinit vxcore::ErrorCode const
    vxattribute_value_conversion_data("error.vxattribute.value.conversion.data", true);
constinit vxcore::ErrorCode const
    vxattribute_value_conversion_data_size("error.vxattribute.value.conversion.data.size", true);
constinit vxcore::ErrorCode const vxattribute_value_secured("error.vxattribute.value.secured",
                                                            true);
constinit vxcore::ErrorCode const
    vxattribute_value_secured_authentication("error.vxattribute.value.secured.authentication",
                                             true);
constinit vxcore::ErrorCode const
    vxattribute_value_secured_cipher("error.vxattribute.value.secured.cipher", true);
constinit vxcore::ErrorCode const
    vxattribute_value_secured_cipher_unknown("error.vxattribute.value.secured.cipher.unknown",
                                             true);
constinit vxcore::ErrorCode const
    vxattribute_value_secured_ciphertext("error.vxattribute.value.secured.ciphertext", true);
constinit vxcore::ErrorCode const
    vxattribute_value_secured_key("error.vxattribute.value.secured.key", true);
constinit vxcore::ErrorCode const
    vxattribute_value_secured_key_duplicate("error.vxattribute.value.secured.key.duplicate", true);
constinit vxcore::ErrorCode const
    vxattribute_value_secured_key_unknown("error.vxattribute.value.secured.key.unknown", true);
constinit vxcore::ErrorCode const
    vxattribute_value_secured_keysize("error.vxattribute.value.secured.keysize", true);
constinit vxcore::ErrorCode const vxattribute_value_type("error.vxattribute.value.type", true);
constinit vxcore::ErrorCode const
    vxattribute_value_type_mismatch("error.vxattribute.value.type.mismatch", true);
constinit vxcore::ErrorCode const
    vxattribute_value_type_unknown("error.vxattribute.value.type.unknown", true);

} // namespace vxattribute::error
