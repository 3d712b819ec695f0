#pragma once

/// Declarations without definitions of everything that other headers of the family name.

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
