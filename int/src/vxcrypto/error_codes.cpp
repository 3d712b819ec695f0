#include "vxcrypto/error_codes_internal.h"

namespace vxcrypto::error {

constinit vxcore::ErrorCode const vxcrypto("error.vxcrypto", true);
constinit vxcore::ErrorCode const vxcrypto_key("error.vxcrypto.key", true);
constinit vxcore::ErrorCode const vxcrypto_key_size("error.vxcrypto.key.size", true);
constinit vxcore::ErrorCode const vxcrypto_openssl("error.vxcrypto.openssl", true);
constinit vxcore::ErrorCode const vxcrypto_randomProvider("error.vxcrypto.randomProvider", true);
constinit vxcore::ErrorCode const
    vxcrypto_randomProvider_arguments("error.vxcrypto.randomProvider.arguments", true);
constinit vxcore::ErrorCode const
    vxcrypto_randomProvider_failed("error.vxcrypto.randomProvider.failed", true);
constinit vxcore::ErrorCode const vxcrypto_rsa("error.vxcrypto.rsa", true);
constinit vxcore::ErrorCode const vxcrypto_rsa_cipherDataSize("error.vxcrypto.rsa.cipherDataSize",
                                                              true);
constinit vxcore::ErrorCode const vxcrypto_rsa_decryption("error.vxcrypto.rsa.decryption", true);
constinit vxcore::ErrorCode const vxcrypto_rsa_encryption("error.vxcrypto.rsa.encryption", true);
constinit vxcore::ErrorCode const vxcrypto_rsa_key("error.vxcrypto.rsa.key", true);
constinit vxcore::ErrorCode const vxcrypto_rsa_keygen("error.vxcrypto.rsa.keygen", true);
constinit vxcore::ErrorCode const vxcrypto_rsa_keystore("error.vxcrypto.rsa.keystore", true);
constinit vxcore::ErrorCode const vxcrypto_rsa_keystore_cipher("error.vxcrypto.rsa.keystore.cipher",
                                                               true);
constinit vxcore::ErrorCode const
    vxcrypto_rsa_keystore_decoding("error.vxcrypto.rsa.keystore.decoding", true);
constinit vxcore::ErrorCode const
    vxcrypto_rsa_keystore_decrypt("error.vxcrypto.rsa.keystore.decrypt", true);
constinit vxcore::ErrorCode const
    vxcrypto_rsa_keystore_encoding("error.vxcrypto.rsa.keystore.encoding", true);
constinit vxcore::ErrorCode const
    vxcrypto_rsa_keystore_password("error.vxcrypto.rsa.keystore.password", true);
constinit vxcore::ErrorCode const vxcrypto_rsa_padding("error.vxcrypto.rsa.padding", true);
constinit vxcore::ErrorCode const vxcrypto_rsa_padding_size("error.vxcrypto.rsa.padding.size",
                                                            true);
constinit vxcore::ErrorCode const vxcrypto_rsa_padding_unknown("error.vxcrypto.rsa.padding.unknown",
                                                               true);
constinit vxcore::ErrorCode const
    vxcrypto_rsa_padding_unsupported("error.vxcrypto.rsa.padding.unsupported", true);
constinit vxcore::ErrorCode const vxcrypto_rsa_plainDataSize("error.vxcrypto.rsa.plainDataSize",
                                                             true);
constinit vxcore::ErrorCode const vxcrypto_rsa_signature("error.vxcrypto.rsa.signature", true);
constinit vxcore::ErrorCode const vxcrypto_rsa_signature_hash("error.vxcrypto.rsa.signature.hash",
                                                              true);
constinit vxcore::ErrorCode const
    vxcrypto_rsa_signature_padding("error.vxcrypto.rsa.signature.padding", true);
constinit vxcore::ErrorCode const vxcrypto_rsa_signature_sign("error.vxcrypto.rsa.signature.sign",
                                                              true);
constinit vxcore::ErrorCode const
    vxcrypto_rsa_signature_verify("error.vxcrypto.rsa.signature.verify", true);
constinit vxcore::ErrorCode const vxcrypto_srp("error.vxcrypto.srp", true);
constinit vxcore::ErrorCode const vxcrypto_srp_invalidArg("error.vxcrypto.srp.invalidArg", true);
constinit vxcore::ErrorCode const vxcrypto_srp_invalidArg_blob("error.vxcrypto.srp.invalidArg.blob",
                                                               true);
constinit vxcore::ErrorCode const
    vxcrypto_srp_invalidArg_hashAlgorithm("error.vxcrypto.srp.invalidArg.hashAlgorithm", true);
constinit vxcore::ErrorCode const
    vxcrypto_srp_invalidArg_modulusLength("error.vxcrypto.srp.invalidArg.modulusLength", true);
constinit vxcore::ErrorCode const vxcrypto_srp_invalidArg_size("error.vxcrypto.srp.invalidArg.size",
                                                               true);
constinit vxcore::ErrorCode const
    vxcrypto_srp_protocolViolation("error.vxcrypto.srp.protocolViolation", true);

} // namespace vxcrypto::error
