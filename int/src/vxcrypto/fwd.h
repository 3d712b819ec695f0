#pragma once

/// Forward declarations of the classes of vxcrypto.

namespace vxcrypto {

class AesCmacContext;
class AesCtrContext;
class AesEncryptContext;
class EaxAesContext;
class IRandomProvider;
class Key;
class Md5Context;

namespace impl {

class CleansedBlock;

} // namespace impl
} // namespace vxcrypto
