#include "vxattribute/secured_value.h"

#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/memory_list_order.h"
#include "vxattribute/sealed/key_marshaler_internal.h"
#include "vxattribute/sealed/memory_wipe_internal.h"
#include "vxattribute/sealed/secured_value_ciphers_internal.h"
#include "vxattribute/value/typed_value_internal.h"
#include "vxcore/hash.h"
#include "vxcore/streamers.h"
#include "vxcore/text_conversion.h"
#include "vxcrypto/random_provider.h"
#include "vxserialize/memory_writer.h"
#include "vxserialize/reader.h"

#include <ostream>

namespace vxattribute {

void SecuredValue::KeyId::swap(KeyId & other) noexcept {
    m_category.swap(other.m_category);
    m_instanceId.swap(other.m_instanceId);
}

unsigned int SecuredValue::KeyId::hash() const noexcept {
    return vxcore::hash_bytes(m_category) ^ m_instanceId.hash();
}

void SecuredValue::KeyId::read(vxserialize::Reader & reader) {
    KeyId fresh;
    reader.begin_record();
    reader >> fresh.m_category >> fresh.m_instanceId;
    reader.end_record();
    swap(fresh);
}

void SecuredValue::KeyId::write(vxserialize::Writer & writer) const {
    writer.begin_record();
    writer << m_category << m_instanceId;
    writer.end_record();
}

SecuredValue::ICipher const & SecuredValue::default_cipher() noexcept {
    return impl::cipherEaxAes128;
}

SecuredValue::ICipherProvider const & SecuredValue::default_cipher_provider() noexcept {
    return impl::defaultCipherProvider;
}

SecuredValue::ICipherProvider const & SecuredValue::strict_cipher_provider() noexcept {
    return impl::strictCipherProvider;
}

SecuredValue::SecuredValue(AttributeValue const & value, std::string annotation, KeyId key_id,
                           vxcrypto::Key const & key, ICipher const & cipher)
    : SecuredValue(value, std::move(annotation), std::move(key_id), key, cipher,
                   *vxcrypto::default_random_provider()) {}

SecuredValue::SecuredValue(AttributeValue const & value, std::string annotation, KeyId key_id,
                           vxcrypto::Key const & key, ICipher const & cipher,
                           vxcrypto::IRandomProvider & random)
    : m_annotation(std::move(annotation)), m_cipherId(cipher.cipher_id()),
      m_keyId(std::move(key_id)) {
    vxserialize::MemoryWriter writer;
    write_attribute_value(writer, value);
    seal(writer.close_and_detach_memory_list(), key, cipher, random);
}

SecuredValue::SecuredValue(vxcrypto::Key const & key_to_wrap, std::string annotation, KeyId key_id,
                           vxcrypto::Key const & key, ICipher const & cipher)
    : SecuredValue(key_to_wrap, std::move(annotation), std::move(key_id), key, cipher,
                   *vxcrypto::default_random_provider()) {}

namespace {

impl::WipedList marshaled(vxcrypto::Key const & key) {
    vxserialize::MemoryWriter writer;
    impl::write_key_as_binary(writer, key); // if this raises, nothing of the key was written
    return impl::WipedList(writer.close_and_detach_memory_list());
}

} // namespace

SecuredValue::SecuredValue(vxcrypto::Key const & key_to_wrap, std::string annotation, KeyId key_id,
                           vxcrypto::Key const & key, ICipher const & cipher,
                           vxcrypto::IRandomProvider & random)
    : m_annotation(std::move(annotation)), m_cipherId(cipher.cipher_id()),
      m_keyId(std::move(key_id)) {
    impl::WipedList const plaintext = marshaled(key_to_wrap);
    seal(plaintext.get(), key, cipher, random);
}

void SecuredValue::seal(vxcore::RefCountPtr<vxserialize::MemoryList> const & plaintext,
                        vxcrypto::Key const & key, ICipher const & cipher,
                        vxcrypto::IRandomProvider & random) {
    Ciphertext sealed = cipher.encrypt(Ciphertext(plaintext), m_annotation, key, random);
    if (!sealed || sealed.get() == plaintext.get()) {
        // "NULL" returns the plaintext list itself, and the caller wipes that list when it holds a
        // key. So the value keeps a copy.
        auto copy = vxserialize::MemoryList::create();
        if (sealed) {
            copy->append_defragmented(*plaintext);
        }
        sealed = std::move(copy);
    }
    m_ciphertext = std::move(sealed);
}

SecuredValue::SecuredValue(SecuredValue const & other)
    : m_annotation(other.m_annotation), m_cipherId(other.m_cipherId), m_keyId(other.m_keyId),
      m_ciphertext(other.m_ciphertext), m_hash(other.m_hash.load(std::memory_order_relaxed)) {}

SecuredValue & SecuredValue::operator=(SecuredValue const & other) {
    SecuredValue(other).swap(*this);
    return *this;
}

SecuredValue & SecuredValue::operator=(SecuredValue && other) noexcept {
    SecuredValue(std::move(other)).swap(*this);
    return *this;
}

void SecuredValue::set(AttributeValue const & value, std::string annotation, KeyId key_id,
                       vxcrypto::Key const & key, ICipher const & cipher) {
    // Sealed aside, so that a failure leaves this value as it was. The other overloads do the same.
    *this = SecuredValue(value, std::move(annotation), std::move(key_id), key, cipher);
}

void SecuredValue::set(AttributeValue const & value, std::string annotation, KeyId key_id,
                       vxcrypto::Key const & key, ICipher const & cipher,
                       vxcrypto::IRandomProvider & random) {
    *this = SecuredValue(value, std::move(annotation), std::move(key_id), key, cipher, random);
}

void SecuredValue::set(vxcrypto::Key const & key_to_wrap, std::string annotation, KeyId key_id,
                       vxcrypto::Key const & key, ICipher const & cipher) {
    *this = SecuredValue(key_to_wrap, std::move(annotation), std::move(key_id), key, cipher);
}

void SecuredValue::set(vxcrypto::Key const & key_to_wrap, std::string annotation, KeyId key_id,
                       vxcrypto::Key const & key, ICipher const & cipher,
                       vxcrypto::IRandomProvider & random) {
    *this =
        SecuredValue(key_to_wrap, std::move(annotation), std::move(key_id), key, cipher, random);
}

void SecuredValue::swap(SecuredValue & other) noexcept {
    m_annotation.swap(other.m_annotation);
    m_cipherId.swap(other.m_cipherId);
    m_keyId.swap(other.m_keyId);
    m_ciphertext.swap(other.m_ciphertext);
    unsigned int const hash = m_hash.load(std::memory_order_relaxed);
    m_hash.store(other.m_hash.load(std::memory_order_relaxed), std::memory_order_relaxed);
    other.m_hash.store(hash, std::memory_order_relaxed);
}

void SecuredValue::read(vxserialize::Reader & reader) {
    // Read aside, so that a failure leaves this value as it was.
    SecuredValue fresh;
    reader.begin_record();
    reader >> fresh.m_annotation >> fresh.m_cipherId;
    fresh.m_keyId.read(reader);
    fresh.m_ciphertext = vxserialize::read_memory_list_as_binary(reader);
    reader.end_record();
    swap(fresh);
}

void SecuredValue::write(vxserialize::Writer & writer) const {
    writer.begin_record();
    writer << m_annotation << m_cipherId;
    m_keyId.write(writer);
    vxserialize::write_memory_list_as_binary(writer, m_ciphertext);
    writer.end_record();
}

unsigned int SecuredValue::ciphertext_size() const noexcept {
    return m_ciphertext ? m_ciphertext->size() : 0;
}

unsigned int SecuredValue::hash() const noexcept {
    // Relaxed, since threads that get here at the same time compute and store the same hash.
    if (unsigned int const known = m_hash.load(std::memory_order_relaxed); known != 0) {
        return known;
    }
    unsigned int h = vxcore::hash_bytes(m_annotation);
    h = vxcore::hash_mix(h, vxcore::hash_bytes(m_cipherId));
    h = vxcore::hash_mix(h, m_keyId.hash());
    h = vxcore::hash_mix(h, impl::hash_memory_list(m_ciphertext));
    if (h == 0) {
        h = ciphertext_size(); // a stored 0 means "not computed"
    }
    m_hash.store(h, std::memory_order_relaxed);
    return h;
}

int SecuredValue::compare(SecuredValue const & other) const noexcept {
    // The sealed bytes come first: their random nonces nearly always differ.
    if (int const order = impl::compare_memory_lists(m_ciphertext, other.m_ciphertext)) {
        return order;
    }
    if (int const order = m_annotation.compare(other.m_annotation)) {
        return order;
    }
    if (int const order = m_cipherId.compare(other.m_cipherId)) {
        return order;
    }
    if (m_keyId == other.m_keyId) {
        return 0;
    }
    return m_keyId < other.m_keyId ? -1 : 1;
}

std::ostream & operator<<(std::ostream & stream, SecuredValue::KeyId const & id) {
    return stream << '\'' << id.category() << "':" << id.instance_id();
}

std::ostream & operator<<(std::ostream & stream, SecuredValue const & value) {
    // Shows neither the sealed bytes nor anything of a key.
    constexpr unsigned int maxShown = 256; // bytes of the annotation
    unsigned int const size = value.ciphertext() ? value.ciphertext()->size() : 0;
    return stream << '<' << vxcore::streamers::String(value.annotation(), maxShown, '"')
                  << " (cipher=" << value.cipher_id() << ", keyid=" << value.key_id()
                  << ", datasize=" << vxcore::to_string(size) << ")>";
}

namespace impl {

int ValueTypeTraits<SecuredValue>::compare(SecuredValue const & a,
                                           SecuredValue const & b) noexcept {
    return a.compare(b);
}

bool ValueTypeTraits<SecuredValue>::equal(SecuredValue const & a, SecuredValue const & b) noexcept {
    return a == b;
}

unsigned int ValueTypeTraits<SecuredValue>::hash(SecuredValue const & a) noexcept {
    return a.hash();
}

} // namespace impl

} // namespace vxattribute

VXATTRIBUTE_INSTANTIATE_ELEMENT(vxattribute::SecuredValue);
