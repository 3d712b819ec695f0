#pragma once

#include "vxattribute/attribute_value_impl.h"
#include "vxcore/error_info.h"
#include "vxcore/ref_count_ptr.h"
#include "vxcore/uuid.h"
#include "vxcrypto/key.h"
#include "vxserialize/memory_list.h"

#include <atomic>
#include <iosfwd>
#include <string>

namespace vxcrypto {
class IRandomProvider;
}

namespace vxattribute {

/// The element type of Secured values: one attribute value, or one key, in encrypted and
/// authenticated form.
///
/// It may be carried, stored, compared and shown without any key. In clear text it says which
/// cipher sealed it, which key did, and a free annotation, which is authenticated with the data;
/// cipher id and key id are not. Who opens values that strangers may have written passes
/// `strict_cipher_provider()`: with the default provider such a value may name the "NULL" cipher,
/// and then only the demand for an empty key stands in its way. docs/guide/security.md tells more.
///
///     vxcrypto::Key const key(bytes, 16);
///     SecuredValue const sealed(AttributeValue("secret"), "login", {"disk", keyUuid}, key,
///                               SecuredValue::default_cipher());
///     AttributeValue const opened =
///         sealed.extract(key, SecuredValue::strict_cipher_provider(), nullptr);
///
/// The sealed bytes are shared between copies and never changed. A copy costs three strings and a
/// count. Every sealing has a nonce of its own, so two sealings of one value are never equal.
///
/// Threads. As other values: separate objects may be used from separate threads.
class VXATTRIBUTE_API SecuredValue {
  public:
    class KeyId;
    class ICipher;
    class ICipherProvider;
    using Ciphertext = vxcore::RefCountPtr<vxserialize::MemoryList const>;
    using Owner = vxcore::RefCountPtr<vxcore::RefCounted<vxcore::AtomicRefCount> const>;
    using CipherPtr = vxcore::InterfacePtr<ICipher const, Owner>;
    using ErrorPtr = vxcore::RefCountPtr<vxcore::ErrorInfo const>;

    /// The key that sealed a value, by a category and an id in it. The library gives it no meaning.
    class VXATTRIBUTE_API KeyId {
      public:
        KeyId() = default;

        KeyId(std::string category, vxcore::Uuid const & instance_id) noexcept
            : m_category(std::move(category)), m_instanceId(instance_id) {}

        explicit KeyId(vxserialize::Reader & reader) { read(reader); }

        std::string const & category() const noexcept { return m_category; }

        vxcore::Uuid const & instance_id() const noexcept { return m_instanceId; }

        void clear() noexcept { KeyId().swap(*this); }

        void swap(KeyId & other) noexcept;
        unsigned int hash() const noexcept;

        /// When that raises, the id is as it was.
        void read(vxserialize::Reader & reader);
        void write(vxserialize::Writer & writer) const;

        [[nodiscard]] friend bool operator==(KeyId const & a, KeyId const & b) noexcept {
            return a.m_instanceId == b.m_instanceId && a.m_category == b.m_category;
        }

        /// By instance id, then by the bytes of the category.
        [[nodiscard]] friend bool operator<(KeyId const & a, KeyId const & b) noexcept {
            return a.m_instanceId == b.m_instanceId ? a.m_category < b.m_category
                                                    : a.m_instanceId < b.m_instanceId;
        }

        [[nodiscard]] friend bool operator>(KeyId const & a, KeyId const & b) noexcept {
            return b < a;
        }

        [[nodiscard]] friend bool operator<=(KeyId const & a, KeyId const & b) noexcept {
            return !(b < a);
        }

        [[nodiscard]] friend bool operator>=(KeyId const & a, KeyId const & b) noexcept {
            return !(a < b);
        }

      private:
        std::string m_category;
        vxcore::Uuid m_instanceId;
    };

    /// AES-EAX with a key of 16 bytes.
    static ICipher const & default_cipher() noexcept;

    /// Knows "EAX_AES128", "EAX_AES256" and "NULL", which does nothing and wants an empty key.
    static ICipherProvider const & default_cipher_provider() noexcept;

    /// Knows "EAX_AES128" and "EAX_AES256": what it opens was sealed with the key.
    static ICipherProvider const & strict_cipher_provider() noexcept;

    /// Empty: no cipher, no key id, nothing sealed.
    SecuredValue() = default;

    explicit SecuredValue(vxserialize::Reader & reader) { read(reader); }

    /// Seals `value` under `key`; the nonce comes from the default random provider, or from
    /// `random`.
    ///
    /// @raises error.vxattribute.value.secured.keysize: `key` is not of the cipher's size.
    /// @raises error.vxcrypto.randomProvider.failed: the provider left the nonce all zeros.
    /// @raises What the random provider raises. So do all that seal.
    SecuredValue(AttributeValue const & value, std::string annotation, KeyId key_id,
                 vxcrypto::Key const & key, ICipher const & cipher);
    SecuredValue(AttributeValue const & value, std::string annotation, KeyId key_id,
                 vxcrypto::Key const & key, ICipher const & cipher,
                 vxcrypto::IRandomProvider & random);

    /// Seals a key under another. No copy of it stays in memory, also when it fails.
    SecuredValue(vxcrypto::Key const & key_to_wrap, std::string annotation, KeyId key_id,
                 vxcrypto::Key const & key, ICipher const & cipher);
    SecuredValue(vxcrypto::Key const & key_to_wrap, std::string annotation, KeyId key_id,
                 vxcrypto::Key const & key, ICipher const & cipher,
                 vxcrypto::IRandomProvider & random);

    SecuredValue(SecuredValue const & other);

    SecuredValue(SecuredValue && other) noexcept { swap(other); }

    SecuredValue & operator=(SecuredValue const & other);
    SecuredValue & operator=(SecuredValue && other) noexcept;
    ~SecuredValue() = default;

    /// Seals as the constructors do and replaces this value; when that fails it is as it was.
    void set(AttributeValue const & value, std::string annotation, KeyId key_id,
             vxcrypto::Key const & key, ICipher const & cipher);
    void set(AttributeValue const & value, std::string annotation, KeyId key_id,
             vxcrypto::Key const & key, ICipher const & cipher, vxcrypto::IRandomProvider & random);
    void set(vxcrypto::Key const & key_to_wrap, std::string annotation, KeyId key_id,
             vxcrypto::Key const & key, ICipher const & cipher);
    void set(vxcrypto::Key const & key_to_wrap, std::string annotation, KeyId key_id,
             vxcrypto::Key const & key, ICipher const & cipher, vxcrypto::IRandomProvider & random);

    void clear() noexcept { SecuredValue().swap(*this); }

    void swap(SecuredValue & other) noexcept;

    std::string const & annotation() const noexcept { return m_annotation; }

    std::string const & cipher_id() const noexcept { return m_cipherId; }

    KeyId const & key_id() const noexcept { return m_keyId; }

    /// Null in an empty value.
    Ciphertext const & ciphertext() const noexcept { return m_ciphertext; }

    /// True when the key and the annotation belong to the sealed bytes. Nothing is deciphered.
    ///
    /// @raises error.vxattribute.value.secured.cipher.unknown: the provider has no such cipher.
    /// @raises error.vxattribute.value.secured.keysize, .ciphertext: sizes that no sealed value of
    ///         that cipher has.
    [[nodiscard]] bool authenticate(vxcrypto::Key const & key) const;
    [[nodiscard]] bool authenticate(vxcrypto::Key const & key,
                                    ICipherProvider const & provider) const;

    /// The value that was sealed.
    ///
    /// @param error  Takes the failure, and null is the result; a null `error` raises it.
    /// @raises As `authenticate`, error.vxattribute.value.secured.authentication for a wrong key or
    ///         bytes that were tampered with, and what reading the opened bytes raises.
    [[nodiscard]] AttributeValue extract(vxcrypto::Key const & key, ErrorPtr * error) const;
    [[nodiscard]] AttributeValue extract(vxcrypto::Key const & key,
                                         ICipherProvider const & provider, ErrorPtr * error) const;

    /// The key that was sealed, or the bytes of a value that is one Binary. No other copy of them
    /// stays in memory.
    ///
    /// Beware of an unknown cipher: with an `error` place it is only reported, and the result is an
    /// empty key. An empty key is what "NULL" asks for. A stranger who renames the cipher of a
    /// wrapped key thus has the default provider accept any value of his own that is opened with
    /// the result. Pass `strict_cipher_provider()` here and where the result is used, and look at
    /// `error` and at the size of the key; or pass a null `error`, with which every failure raises.
    ///
    /// @param error  Takes the failure; it is raised as well, unless the cipher is unknown. Null
    ///               raises it in any case.
    /// @raises As `extract`, error.vxattribute.value.type.mismatch, .type.unknown and
    ///         .cardinality.expectSingle: what was sealed is not one Binary.
    [[nodiscard]] vxcrypto::Key extract_binary_as_key(vxcrypto::Key const & key,
                                                      ErrorPtr * error) const;
    [[nodiscard]] vxcrypto::Key extract_binary_as_key(vxcrypto::Key const & key,
                                                      ICipherProvider const & provider,
                                                      ErrorPtr * error) const;

    /// A record of annotation, cipher id, key id and sealed bytes. When reading raises, the value
    /// is as it was. What is read is not checked: that takes the key.
    void read(vxserialize::Reader & reader);
    void write(vxserialize::Writer & writer) const;

    /// Computed once and kept. O(size) at the first call.
    unsigned int hash() const noexcept;

    /// By the sealed bytes, then annotation, cipher id and key id.
    [[nodiscard]] int compare(SecuredValue const & other) const noexcept;

    [[nodiscard]] friend bool operator==(SecuredValue const & a, SecuredValue const & b) noexcept {
        return a.compare(b) == 0;
    }

    [[nodiscard]] friend bool operator<(SecuredValue const & a, SecuredValue const & b) noexcept {
        return a.compare(b) < 0;
    }

    [[nodiscard]] friend bool operator<=(SecuredValue const & a, SecuredValue const & b) noexcept {
        return a.compare(b) <= 0;
    }

    [[nodiscard]] friend bool operator>(SecuredValue const & a, SecuredValue const & b) noexcept {
        return a.compare(b) > 0;
    }

    [[nodiscard]] friend bool operator>=(SecuredValue const & a, SecuredValue const & b) noexcept {
        return a.compare(b) >= 0;
    }

  private:
    /// Seals what stands in `plaintext`; the annotation is this value's.
    void seal(vxcore::RefCountPtr<vxserialize::MemoryList> const & plaintext,
              vxcrypto::Key const & key, ICipher const & cipher,
              vxcrypto::IRandomProvider & random);

    unsigned int ciphertext_size() const noexcept;

    std::string m_annotation;
    std::string m_cipherId;
    KeyId m_keyId;
    Ciphertext m_ciphertext;
    mutable std::atomic<unsigned int> m_hash{0};
};

/// A way of sealing. It holds no key and may be used from any thread.
class SecuredValue::ICipher {
  public:
    virtual std::string const & cipher_id() const = 0;

    /// Bytes of the keys that it takes.
    virtual unsigned int keysize() const = 0;

    /// The sealed bytes of `plaintext`, which stays as it is; null counts as empty.
    virtual Ciphertext encrypt(Ciphertext const & plaintext, std::string const & annotation,
                               vxcrypto::Key const & key,
                               vxcrypto::IRandomProvider & random) const = 0;

    /// The plaintext; raises when the check fails.
    [[nodiscard]] virtual Ciphertext decrypt(vxcrypto::Key const & key,
                                             std::string const & annotation,
                                             Ciphertext const & ciphertext) const = 0;

    /// Checks only.
    [[nodiscard]] virtual bool authenticate(vxcrypto::Key const & key,
                                            std::string const & annotation,
                                            Ciphertext const & ciphertext) const = 0;

  protected:
    ICipher() = default;
    ICipher(ICipher const &) = default;
    ICipher & operator=(ICipher const &) = default;
    ~ICipher() = default;
};

/// Finds ciphers by their ids.
class SecuredValue::ICipherProvider {
  public:
    /// Empty when the id is not known.
    virtual CipherPtr find_cipher(std::string const & cipher_id) const = 0;

  protected:
    ICipherProvider() = default;
    ICipherProvider(ICipherProvider const &) = default;
    ICipherProvider & operator=(ICipherProvider const &) = default;
    ~ICipherProvider() = default;
};

/// Writes 'category':instance.
VXATTRIBUTE_API std::ostream & operator<<(std::ostream & stream, SecuredValue::KeyId const & id);

/// Writes the annotation, cut at 256 bytes, cipher, key id and the number of sealed bytes; never
/// one of these bytes.
VXATTRIBUTE_API std::ostream & operator<<(std::ostream & stream, SecuredValue const & value);

namespace impl {

template <>
struct VXATTRIBUTE_API ValueTypeTraits<SecuredValue> : ObjValueTypeTraits<SecuredValue> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeSecured; }

    static int compare(SecuredValue const & a, SecuredValue const & b) noexcept;
    static bool equal(SecuredValue const & a, SecuredValue const & b) noexcept;
    static unsigned int hash(SecuredValue const & a) noexcept;
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, SecuredValue const * begin,
                            SecuredValue const * end);
};

} // namespace impl
} // namespace vxattribute

VXATTRIBUTE_EXTERN_ELEMENT(vxattribute::SecuredValue);
