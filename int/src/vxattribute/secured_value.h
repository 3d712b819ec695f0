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
/// It may be carried, stored, compared and shown without any key. Three parts are in clear text:
/// the id of the cipher, the id of the key and a free annotation. The annotation is authenticated
/// together with the data; cipher id and key id are not.
///
/// seal.h has functions for the common cases, with the safe choices made. The members here also
/// take ciphers, providers and sources of random bytes of the caller's own.
///
/// Pass `strict_cipher_provider()` to open values from untrusted sources. With the default provider
/// such a value may name the "NULL" cipher, which accepts anything under an empty key. See
/// docs/guide/secrets.md.
///
///     vxcrypto::Key const key = vxcrypto::Key::random(128);
///     SecuredValue const sealed(AttributeValue("secret"), "login", {"disk", keyUuid}, key,
///                               SecuredValue::default_cipher());
///     AttributeValue const opened =
///         sealed.extract(key, SecuredValue::strict_cipher_provider(), nullptr);
///
/// Cost. The sealed bytes are shared between copies and never changed; a copy costs three strings
/// and one atomic count. The EAX ciphers add 32 bytes to the marshaled value. Every sealing has a
/// nonce of its own, so two sealings of one value are never equal.
///
/// Threads. Separate objects may be used from separate threads. One object: many readers or one
/// writer.
///
/// Errors. After any failure of a member the value is as it was.
class VXATTRIBUTE_API SecuredValue {
  public:
    class KeyId;
    class ICipher;
    class ICipherProvider;
    /// Sealed or opened bytes; null counts as none. Copies share the bytes.
    using Ciphertext = vxcore::RefCountPtr<vxserialize::MemoryList const>;
    /// A cipher, and what keeps it alive; nothing for those of this library.
    using Owner = vxcore::RefCountPtr<vxcore::RefCounted<vxcore::AtomicRefCount> const>;
    using CipherPtr = vxcore::InterfacePtr<ICipher const, Owner>;
    /// A failure that is reported instead of raised.
    using ErrorPtr = vxcore::RefCountPtr<vxcore::ErrorInfo const>;

    /// Which key sealed a value: a category and an id within it, such as the store that has the key
    /// and its UUID there. The library only stores and compares it. It is in clear text and not
    /// authenticated, so treat it as a hint.
    ///
    /// Threads. One object: many readers or one writer.
    class VXATTRIBUTE_API KeyId {
      public:
        /// No category and the nil id, or the given parts.
        KeyId() = default;

        KeyId(std::string category, vxcore::Uuid const & instance_id) noexcept
            : m_category(std::move(category)), m_instanceId(instance_id) {}

        /// Reads what `write` wrote.
        explicit KeyId(vxserialize::Reader & reader) { read(reader); }

        /// The parts; the references hold until the id is changed or destroyed.
        std::string const & category() const noexcept VXCORE_LIFETIMEBOUND { return m_category; }

        vxcore::Uuid const & instance_id() const noexcept VXCORE_LIFETIMEBOUND {
            return m_instanceId;
        }

        /// Makes it the default id.
        void clear() noexcept { KeyId().swap(*this); }

        /// Exchanges both parts.
        void swap(KeyId & other) noexcept;

        /// Equal ids have equal hashes. O(size of the category).
        unsigned int hash() const noexcept;

        /// A record of the category and the instance id. They raise what reader and writer raise;
        /// when reading raises, the id is as it was.
        void read(vxserialize::Reader & reader);
        void write(vxserialize::Writer & writer) const;

        /// Both parts equal.
        [[nodiscard]] friend bool operator==(KeyId const & a, KeyId const & b) noexcept {
            return a.m_instanceId == b.m_instanceId && a.m_category == b.m_category;
        }

        /// By instance id, then by the unsigned bytes of the category.
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

    // The ciphers and providers of this library. They are static objects and may be used from any
    // thread, once load-time code has run.

    /// "EAX_AES128": AES-EAX with a key of 16 bytes.
    static ICipher const & default_cipher() noexcept;

    /// Knows "EAX_AES128", "EAX_AES256" and "NULL", which seals nothing and takes an empty key
    /// only.
    static ICipherProvider const & default_cipher_provider() noexcept;

    /// Knows "EAX_AES128" and "EAX_AES256", the latter with a key of 32 bytes. What opens with it
    /// was sealed with the key.
    static ICipherProvider const & strict_cipher_provider() noexcept;

    /// Empty: no cipher, no key id, nothing sealed.
    SecuredValue() = default;

    /// Reads what `write` wrote. Nothing is checked: see `read`.
    explicit SecuredValue(vxserialize::Reader & reader) { read(reader); }

    /// Seals `value` under `key`. The nonce comes from the default random provider, or from
    /// `random`.
    ///
    /// @param annotation  Stays in clear text and is authenticated.
    /// @param key_id      Stays in clear text and is not authenticated.
    /// @cost   O(size of the marshaled value), with one copy of it. The plaintext is not wiped.
    /// @raises error.vxattribute.value.secured.keysize: `key` is not of the cipher's size.
    /// @raises error.vxcrypto.randomProvider.failed: the provider left the nonce all zeros.
    /// @raises What the random provider raises. These hold for all constructors and `set`s that
    ///         seal.
    SecuredValue(AttributeValue const & value, std::string annotation, KeyId key_id,
                 vxcrypto::Key const & key, ICipher const & cipher);
    SecuredValue(AttributeValue const & value, std::string annotation, KeyId key_id,
                 vxcrypto::Key const & key, ICipher const & cipher,
                 vxcrypto::IRandomProvider & random);

    /// Seals a key under another one. No copy of it stays in memory, also when sealing fails. It is
    /// sealed as a value of one Binary; open it with `extract_binary_as_key`.
    SecuredValue(vxcrypto::Key const & key_to_wrap, std::string annotation, KeyId key_id,
                 vxcrypto::Key const & key, ICipher const & cipher);
    SecuredValue(vxcrypto::Key const & key_to_wrap, std::string annotation, KeyId key_id,
                 vxcrypto::Key const & key, ICipher const & cipher,
                 vxcrypto::IRandomProvider & random);

    /// A copy shares the sealed bytes and keeps the hash. A source that was moved from is empty.
    SecuredValue(SecuredValue const & other);

    SecuredValue(SecuredValue && other) noexcept { swap(other); }

    SecuredValue & operator=(SecuredValue const & other);
    SecuredValue & operator=(SecuredValue && other) noexcept;
    ~SecuredValue() = default;

    /// Seals as the constructors do and replaces this value. When sealing raises, this value is as
    /// it was.
    void set(AttributeValue const & value, std::string annotation, KeyId key_id,
             vxcrypto::Key const & key, ICipher const & cipher);
    void set(AttributeValue const & value, std::string annotation, KeyId key_id,
             vxcrypto::Key const & key, ICipher const & cipher, vxcrypto::IRandomProvider & random);
    void set(vxcrypto::Key const & key_to_wrap, std::string annotation, KeyId key_id,
             vxcrypto::Key const & key, ICipher const & cipher);
    void set(vxcrypto::Key const & key_to_wrap, std::string annotation, KeyId key_id,
             vxcrypto::Key const & key, ICipher const & cipher, vxcrypto::IRandomProvider & random);

    /// Makes it an empty value. The sealed bytes stay in its copies.
    void clear() noexcept { SecuredValue().swap(*this); }

    /// Exchanges all parts.
    void swap(SecuredValue & other) noexcept;

    /// The parts, as they were sealed or read. The references hold until the value is changed or
    /// destroyed.
    std::string const & annotation() const noexcept VXCORE_LIFETIMEBOUND { return m_annotation; }

    std::string const & cipher_id() const noexcept VXCORE_LIFETIMEBOUND { return m_cipherId; }

    KeyId const & key_id() const noexcept VXCORE_LIFETIMEBOUND { return m_keyId; }

    /// The sealed bytes; null in an empty value.
    Ciphertext const & ciphertext() const noexcept VXCORE_LIFETIMEBOUND { return m_ciphertext; }

    /// True when the sealed bytes belong to this key and annotation. Nothing is deciphered. With
    /// the "NULL" cipher and an empty key it is true for any bytes: pass the strict provider for
    /// values from untrusted sources.
    ///
    /// @param provider  Finds the cipher; the short form takes `default_cipher_provider()`.
    /// @cost   O(size); no byte is copied.
    /// @raises error.vxattribute.value.secured.cipher.unknown: the provider has no such cipher.
    /// @raises error.vxattribute.value.secured.keysize: `key` is not of the cipher's size.
    /// @raises error.vxattribute.value.secured.ciphertext: fewer bytes than any sealed value has,
    ///         which are the 32 of nonce and tag.
    [[nodiscard]] bool authenticate(vxcrypto::Key const & key) const;
    [[nodiscard]] bool authenticate(vxcrypto::Key const & key,
                                    ICipherProvider const & provider) const;

    /// The value that was sealed. Nothing is deciphered before the check has passed.
    ///
    ///     SecuredValue::ErrorPtr error;
    ///     auto const opened = sealed.extract(key, SecuredValue::strict_cipher_provider(), &error);
    ///     if (error) { ... } // opened is null then, but null may also have been sealed
    ///
    /// @param error  Receives the failure, and the result is null. Null means to raise the failure.
    ///               On success `*error` is not touched.
    /// @raises As `authenticate`; error.vxattribute.value.secured.authentication: a wrong key, or
    ///         parts that were tampered with; what reading the opened bytes raises.
    /// @cost   O(size), with one copy of the bytes, which is not wiped.
    [[nodiscard]] AttributeValue extract(vxcrypto::Key const & key, ErrorPtr * error) const;
    [[nodiscard]] AttributeValue extract(vxcrypto::Key const & key,
                                         ICipherProvider const & provider, ErrorPtr * error) const;

    /// The key that was sealed, or the bytes of a value that is one Binary. No other copy of them
    /// stays in memory.
    ///
    /// Beware of an unknown cipher: when `error` is not null it is only reported, and the result is
    /// an empty key. An empty key is what "NULL" takes. An attacker who renames the cipher of a
    /// wrapped key thus makes the default provider accept any forged value that is opened with the
    /// result. Pass `strict_cipher_provider()` here and where the result is used, and check `error`
    /// and the size of the key; or pass a null `error`, with which every failure is raised.
    ///
    /// @param error  Receives the failure, which is raised as well unless the cipher is unknown.
    ///               When `error` is null, every failure is raised.
    /// @raises As `extract`; error.vxattribute.value.type.mismatch, .type.unknown and
    ///         .cardinality.expectSingle: what was sealed is not one Binary.
    [[nodiscard]] vxcrypto::Key extract_binary_as_key(vxcrypto::Key const & key,
                                                      ErrorPtr * error) const;
    [[nodiscard]] vxcrypto::Key extract_binary_as_key(vxcrypto::Key const & key,
                                                      ICipherProvider const & provider,
                                                      ErrorPtr * error) const;

    /// A record of annotation, cipher id, key id and sealed bytes: see docs/formats/values.md.
    /// `read` checks nothing, because a check needs the key. Both raise what reader and writer
    /// raise.
    void read(vxserialize::Reader & reader);
    void write(vxserialize::Writer & writer) const;

    /// Of all parts; equal values have equal hashes. O(size) at the first call, then stored.
    unsigned int hash() const noexcept;

    /// By the sealed bytes, then annotation, cipher id and key id. Only the sign of the result
    /// counts. Not in constant time: it compares public bytes, and no key is involved.
    [[nodiscard]] int compare(SecuredValue const & other) const noexcept;

    /// The order of `compare`, all parts equal for `==`.
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
    friend VXATTRIBUTE_API SecuredValue reseal_with(SecuredValue const & sealed,
                                                    vxcrypto::Key const & old_key,
                                                    vxcrypto::Key const & new_key,
                                                    KeyId new_key_id);

    /// Seals `plaintext` with this value's annotation.
    void seal(vxcore::RefCountPtr<vxserialize::MemoryList> const & plaintext,
              vxcrypto::Key const & key, ICipher const & cipher,
              vxcrypto::IRandomProvider & random);

    /// In bytes; 0 for none.
    unsigned int ciphertext_size() const noexcept;

    std::string m_annotation;
    std::string m_cipherId;
    KeyId m_keyId;
    Ciphertext m_ciphertext;
    mutable std::atomic<unsigned int> m_hash{0};
};

/// A way of sealing, for implementing ciphers of one's own. It holds no key and may be used from
/// any thread. The destructor is protected: never delete through this interface.
///
/// An implementation is used for sealing by passing it to a constructor or `set`, and for opening
/// through an ICipherProvider that finds it by its id. The functions that take a key raise when its
/// size is not `keysize()`; what they raise passes through SecuredValue.
class SecuredValue::ICipher {
  public:
    /// The id that sealed values store. It is stored data: never change it. Valid as long as the
    /// cipher.
    virtual std::string const & cipher_id() const = 0;

    /// The size of its keys, in bytes.
    virtual unsigned int keysize() const = 0;

    /// The sealed bytes of `plaintext`, which is not changed. When `plaintext` holds a key, it is
    /// wiped afterwards; the result must not share its memory, which would prevent that. Returning
    /// `plaintext` itself is allowed: it is copied.
    ///
    /// @param annotation  To be authenticated with the data.
    /// @param random      For the nonce.
    virtual Ciphertext encrypt(Ciphertext const & plaintext, std::string const & annotation,
                               vxcrypto::Key const & key,
                               vxcrypto::IRandomProvider & random) const = 0;

    /// The plaintext. Raises when the check fails, before it has deciphered anything.
    [[nodiscard]] virtual Ciphertext decrypt(vxcrypto::Key const & key,
                                             std::string const & annotation,
                                             Ciphertext const & ciphertext) const = 0;

    /// Checks only. Raises on a wrong size of the key or the bytes; otherwise returns whether they
    /// belong together.
    [[nodiscard]] virtual bool authenticate(vxcrypto::Key const & key,
                                            std::string const & annotation,
                                            Ciphertext const & ciphertext) const = 0;

  protected:
    ICipher() = default;
    ICipher(ICipher const &) = default;
    ICipher & operator=(ICipher const &) = default;
    ~ICipher() = default;
};

/// Finds ciphers by their ids, for programs with ciphers of their own or that allow only some. May
/// be used from any thread. The destructor is protected: never delete through this interface.
class SecuredValue::ICipherProvider {
  public:
    /// The cipher of that id, by exact bytes; an empty pointer when the id is unknown. The owner in
    /// the pointer keeps the cipher alive during the operation; static ciphers need none.
    virtual CipherPtr find_cipher(std::string const & cipher_id) const = 0;

  protected:
    ICipherProvider() = default;
    ICipherProvider(ICipherProvider const &) = default;
    ICipherProvider & operator=(ICipherProvider const &) = default;
    ~ICipherProvider() = default;
};

/// Inserts the category in single quotes, a colon and the instance id.
VXATTRIBUTE_API std::ostream & operator<<(std::ostream & stream, SecuredValue::KeyId const & id);

/// Inserts the annotation, cut at 256 bytes, the cipher id, the key id and the number of sealed
/// bytes, but none of these bytes. Do not put secrets into annotations: they appear in logs.
VXATTRIBUTE_API std::ostream & operator<<(std::ostream & stream, SecuredValue const & value);

namespace impl {

/// The rules of the element type: see value_type_traits.h.
template <>
struct VXATTRIBUTE_API ValueTypeTraits<SecuredValue> : ObjValueTypeTraits<SecuredValue> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeSecured; }

    /// As the value's own operations.
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
