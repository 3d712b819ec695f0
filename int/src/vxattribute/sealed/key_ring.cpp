#include "vxattribute/key_ring.h"

#include "vxattribute/error_codes.h"
#include "vxattribute/sealed/secured_value_ciphers_internal.h"
#include "vxcore/error_composer.h"

#include <utility>

namespace vxattribute {

namespace {

/// Raises a failure about one key. The text of an id from a stream is shown as it is, like that of
/// every name in a message.
[[noreturn]] void throw_about(KeyRing::KeyId const & id, char const * message,
                              vxcore::ErrorCode const & code, char const * function) {
    vxcore::ErrorComposer(message)
        .param("category", id.category())
        .param("instanceId", id.instance_id().as_string(0))
        .throw_error(code, VXCORE_LOCATION(function));
}

[[noreturn]] void throw_unknown(KeyRing::KeyId const & id, char const * function) {
    throw_about(id, "The key ring has no key with the id '{@category}':{@instanceId}",
                error::vxattribute_value_secured_key_unknown, function);
}

} // namespace

KeyRing::KeyRing() noexcept = default;

KeyRing::KeyRing(KeyRing && other) noexcept {
    swap(other);
}

KeyRing & KeyRing::operator=(KeyRing && other) noexcept {
    KeyRing(std::move(other)).swap(*this);
    return *this;
}

KeyRing::~KeyRing() = default;

void KeyRing::swap(KeyRing & other) noexcept {
    m_keys.swap(other.m_keys); // keeps the entries where they are, and so m_current valid
    std::swap(m_current, other.m_current);
}

void KeyRing::add(KeyId key_id, vxcrypto::Key && key) {
    (void)impl::cipher_for(key);
    auto const [at, isNew] = m_keys.try_emplace(std::move(key_id), std::move(key));
    if (!isNew) {
        throw_about(at->first,
                    "The key ring already has a key with the id '{@category}':{@instanceId}",
                    error::vxattribute_value_secured_key_duplicate, "vxattribute::KeyRing::add()");
    }
    if (m_keys.size() == 1) {
        m_current = &*at;
    }
}

void KeyRing::use(KeyId const & key_id) {
    auto const at = m_keys.find(key_id);
    if (at == m_keys.end()) {
        throw_unknown(key_id, "vxattribute::KeyRing::use()");
    }
    m_current = &*at;
}

bool KeyRing::remove(KeyId const & key_id) noexcept {
    auto const at = m_keys.find(key_id);
    if (at == m_keys.end()) {
        return false;
    }
    if (m_current == &*at) {
        m_current = nullptr;
    }
    m_keys.erase(at);
    return true;
}

KeyRing::Keys::value_type const & KeyRing::current_entry() const {
    if (m_current == nullptr) {
        vxcore::throw_error(
            error::vxattribute_value_secured_key_unknown,
            vxcore::SourceString("The key ring has no current key to seal with", true),
            VXCORE_LOCATION("vxattribute::KeyRing::seal()"));
    }
    return *m_current;
}

vxcrypto::Key const & KeyRing::key_of(SecuredValue const & sealed) const {
    auto const at = m_keys.find(sealed.key_id());
    if (at == m_keys.end()) {
        throw_unknown(sealed.key_id(), "vxattribute::KeyRing::open()");
    }
    return at->second;
}

SecuredValue KeyRing::seal(AttributeValue const & value, std::string annotation) const {
    auto const & [id, key] = current_entry();
    return vxattribute::seal(value, key, {std::move(annotation), id});
}

SecuredValue KeyRing::seal_key(vxcrypto::Key const & key_to_wrap, std::string annotation) const {
    auto const & [id, key] = current_entry();
    return vxattribute::seal_key(key_to_wrap, key, {std::move(annotation), id});
}

AttributeValue KeyRing::open(SecuredValue const & sealed) const {
    return vxattribute::open(sealed, key_of(sealed));
}

AttributeValue KeyRing::open(AttributeValue const & sealed) const {
    return open(sealed.get<SecuredValue>());
}

vxcrypto::Key KeyRing::open_key(SecuredValue const & sealed) const {
    return vxattribute::open_key(sealed, key_of(sealed));
}

vxcrypto::Key KeyRing::open_key(AttributeValue const & sealed) const {
    return open_key(sealed.get<SecuredValue>());
}

SecuredValue KeyRing::reseal(SecuredValue const & sealed) const {
    auto const & [id, key] = current_entry();
    return reseal_with(sealed, key_of(sealed), key, id);
}

SecuredValue KeyRing::reseal(AttributeValue const & sealed) const {
    return reseal(sealed.get<SecuredValue>());
}

} // namespace vxattribute
