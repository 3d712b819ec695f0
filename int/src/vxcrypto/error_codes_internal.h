#pragma once

#include "vxcore/error_code.h"

/// The error codes of vxcrypto. The names are internal; callers match codes by their text.
///
/// Only `key_size` and the two leaves of `randomProvider` are raised here. The others complete the
/// family of codes that exists in every process that has loaded the library.
namespace vxcrypto::error {

extern vxcore::ErrorCode const vxcrypto;
extern vxcore::ErrorCode const vxcrypto_key;
extern vxcore::ErrorCode const vxcrypto_key_size;
extern vxcore::ErrorCode const vxcrypto_openssl;
extern vxcore::ErrorCode const vxcrypto_randomProvider;
extern vxcore::ErrorCode const vxcrypto_randomProvider_arguments;
extern vxcore::ErrorCode const vxcrypto_randomProvider_failed;
extern vxcore::ErrorCode const vxcrypto_rsa;
extern vxcore::ErrorCode const vxcrypto_rsa_cipherDataSize;
extern vxcore::ErrorCode const vxcrypto_rsa_decryption;
extern vxcore::ErrorCode const vxcrypto_rsa_encryption;
extern vxcore::ErrorCode const vxcrypto_rsa_key;
extern vxcore::ErrorCode const vxcrypto_rsa_keygen;
extern vxcore::ErrorCode const vxcrypto_rsa_keystore;
extern vxcore::ErrorCode const vxcrypto_rsa_keystore_cipher;
extern vxcore::ErrorCode const vxcrypto_rsa_keystore_decoding;
extern vxcore::ErrorCode const vxcrypto_rsa_keystore_decrypt;
extern vxcore::ErrorCode const vxcrypto_rsa_keystore_encoding;
extern vxcore::ErrorCode const vxcrypto_rsa_keystore_password;
extern vxcore::ErrorCode const vxcrypto_rsa_padding;
extern vxcore::ErrorCode const vxcrypto_rsa_padding_size;
extern vxcore::ErrorCode const vxcrypto_rsa_padding_unknown;
extern vxcore::ErrorCode const vxcrypto_rsa_padding_unsupported;
extern vxcore::ErrorCode const vxcrypto_rsa_plainDataSize;
extern vxcore::ErrorCode const vxcrypto_rsa_signature;
extern vxcore::ErrorCode const vxcrypto_rsa_signature_hash;
extern vxcore::ErrorCode const vxcrypto_rsa_signature_padding;
extern vxcore::ErrorCode const vxcrypto_rsa_signature_sign;
extern vxcore::ErrorCode const vxcrypto_rsa_signature_verify;
extern vxcore::ErrorCode const vxcrypto_srp;
extern vxcore::ErrorCode const vxcrypto_srp_invalidArg;
extern vxcore::ErrorCode const vxcrypto_srp_invalidArg_blob;
extern vxcore::ErrorCode const vxcrypto_srp_invalidArg_hashAlgorithm;
extern vxcore::ErrorCode const vxcrypto_srp_invalidArg_modulusLength;
extern vxcore::ErrorCode const vxcrypto_srp_invalidArg_size;
extern vxcore::ErrorCode const vxcrypto_srp_protocolViolation;

} // namespace vxcrypto::error
