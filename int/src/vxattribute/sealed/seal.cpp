#include "vxattribute/seal.h"

#include "vxattribute/sealed/secured_value_ciphers_internal.h"

namespace vxattribute {

SecuredValue seal(AttributeValue const & value, vxcrypto::Key const & key, SealOptions options) {
    return SecuredValue(value, std::move(options.annotation), std::move(options.key_id), key,
                        impl::cipher_for(key));
}

SecuredValue seal_key(vxcrypto::Key const & key_to_wrap, vxcrypto::Key const & key,
                      SealOptions options) {
    return SecuredValue(key_to_wrap, std::move(options.annotation), std::move(options.key_id), key,
                        impl::cipher_for(key));
}

AttributeValue open(SecuredValue const & sealed, vxcrypto::Key const & key) {
    return sealed.extract(key, SecuredValue::strict_cipher_provider(), nullptr);
}

AttributeValue open(AttributeValue const & sealed, vxcrypto::Key const & key) {
    return open(sealed.get<SecuredValue>(), key);
}

vxcrypto::Key open_key(SecuredValue const & sealed, vxcrypto::Key const & key) {
    return sealed.extract_binary_as_key(key, SecuredValue::strict_cipher_provider(), nullptr);
}

vxcrypto::Key open_key(AttributeValue const & sealed, vxcrypto::Key const & key) {
    return open_key(sealed.get<SecuredValue>(), key);
}

} // namespace vxattribute
