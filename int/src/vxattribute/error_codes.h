#pragma once

#include "vxattribute/export.h"
#include "vxcore/error_code.h"

/// The error codes of this library. The dots in their names form a tree:
/// `vxcore::ErrorInfo::matches` tests for a code and all codes below it. A constant has the name of
/// its code without "error." and with underscores for dots. All are usable before any load-time
/// code has run.
///
///     } catch (vxcore::ErrorException const & e) {
///         if (e.info()->matches(vxattribute::error::vxattribute_query)) { // a wrong setting
///
/// A code that only groups those below it is never raised itself, except `vxattribute_query`. Each
/// comment covers the constants up to the next blank line.
namespace vxattribute::error {

/// Any failure that this library detects itself. Failures of readers, writers and streams keep
/// their own codes.
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute;

/// Not raised by this library.
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_invalidParameter;

/// A map lacks a name that a call requires, or a path leads through a value that is not one map,
/// or through too many maps. See attribute_access.h and map_path.h.
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_map;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_map_attributeNotFound;

/// Failures of decoders of names and of packages of names, grouped below.
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_name;

/// A stream of encoded names is damaged, or uses a package that the decoder lacks. See
/// AttributeNameDecoder.
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_name_decoder;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_name_decoder_packageRef;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_name_decoder_packageRef_invalid;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_name_decoder_packageRef_unknown;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_name_decoder_unknownIndex;

/// A list of names cannot be a package: a name comes twice, or a stored list is not in the form
/// that was written. See AttributeNamePackage and name_list.h.
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_name_package;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_name_package_duplicateName;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_name_package_serialization;

/// A setting is absent, has the wrong number of elements, or was not accepted. See Query, whose
/// failures carry the name of the setting as parameter `name`, and ConvertableValue. TraceLevel
/// raises `vxattribute_query` itself for a setting of several elements.
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_query;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_query_badValue;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_query_notFound;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_query_tooFew;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_query_tooMany;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_query_typeConversion;

/// A configuration differs from its description, and what a problem is when a name is not
/// described. See Settings.
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_query_settings;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_query_unknownName;

/// Failures of values, grouped below.
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value;

/// A stream has more bytes than a Binary takes: see BinaryValue::max_stream_size.
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_binary;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_binary_size;

/// A value has no element, or several, where one is required.
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_cardinality;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_cardinality_expectNonzero;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_cardinality_expectSingle;

/// Not raised by this library.
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_conversion;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_conversion_data;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_conversion_data_size;

/// A sealed value cannot be sealed, checked or opened: wrong key or changed data, a cipher that
/// the provider lacks, too few sealed bytes, or a key of the wrong size. See SecuredValue. Or a
/// ring of keys lacks the key, or has another one of that id: see KeyRing.
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_secured;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_secured_authentication;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_secured_cipher;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_secured_cipher_unknown;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_secured_ciphertext;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_secured_key;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_secured_key_duplicate;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_secured_key_unknown;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_secured_keysize;

/// A value has another type than the call requires, or a number is not that of a type.
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_type;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_type_mismatch;
extern VXATTRIBUTE_API vxcore::ErrorCode const vxattribute_value_type_unknown;

} // namespace vxattribute::error
