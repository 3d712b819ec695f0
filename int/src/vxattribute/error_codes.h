#pragma once

#include "vxattribute/export.h"
#include "vxcore/error_code.h"

/// The error codes of this library. The dots in their names form a tree:
/// `vxcore::ErrorInfo::matches` tests for a code and all codes below it. A constant has the name of
/// its code without "error." and with underscores for dots. All are usable before any load-time
/// code has run.
namespace vxattribute::error {

extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_invalidParameter;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_map;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_map_attributeNotFound;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_name;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_name_decoder;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_name_decoder_packageRef;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_name_decoder_packageRef_invalid;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_name_decoder_packageRef_unknown;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_name_decoder_unknownIndex;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_name_package;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_name_package_duplicateName;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_name_package_serialization;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_query;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_query_badValue;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_query_notFound;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_query_tooFew;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_query_tooMany;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_query_typeConversion;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_binary;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_binary_size;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_cardinality;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_cardinality_expectNonzero;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_cardinality_expectSingle;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_conversion;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_conversion_data;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_conversion_data_size;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_secured;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_secured_authentication;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_secured_cipher;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_secured_cipher_unknown;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_secured_ciphertext;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_secured_keysize;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_type;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_type_mismatch;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_type_unknown;

} // namespace vxattribute::error
