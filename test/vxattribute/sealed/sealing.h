#pragma once

#include "vxattribute/vxattribute.h"
#include "vxserialize/memory_reader.h"
#include "vxserialize/memory_writer.h"

#include <string>

/// Keys and helpers for tests of sealed values.
namespace vxtest::sealing {

using namespace vxattribute;
using vxcrypto::Key;

inline SecuredValue::ICipher const & cipher(std::string const & id) {
    return *SecuredValue::default_cipher_provider().find_cipher(id);
}

inline Key key_of(std::string const & bytes) {
    return Key(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

inline Key key_of_size(unsigned int size) {
    return key_of(std::string("a key that is long enough for 32").substr(0, size));
}

inline SecuredValue::KeyId const keyId("category", vxcore::Uuid());

template <typename Secret>
SecuredValue seal_note(Secret const & secret, Key const & key,
                       std::string const & id = "EAX_AES128") {
    return SecuredValue(secret, "note", keyId, key, cipher(id));
}

/// Returns a sealed value of these parts, unchecked, as anybody may write it.
inline SecuredValue value_of(std::string const & annotation, std::string const & cipherId,
                             std::string const & sealed,
                             SecuredValue::KeyId const & sealedWith = keyId) {
    vxserialize::MemoryWriter writer;
    writer.begin_record();
    writer << annotation << cipherId;
    sealedWith.write(writer);
    writer.write_binary(sealed.data(), static_cast<unsigned int>(sealed.size()));
    writer.end_record();
    vxserialize::MemoryReader reader = writer.reader();
    return SecuredValue(reader);
}

} // namespace vxtest::sealing
