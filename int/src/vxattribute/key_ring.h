#pragma once

#include "vxattribute/seal.h"

#include <cstddef>
#include <map>
#include <string>

namespace vxattribute {

/// Keys by their ids: finds the one that opens a value, and rotates to a new one.
///
///     KeyRing ring;
///     ring.add(oldId, vxfile::read_key_file("old.key")); // still opens what it sealed
///     ring.add(newId, vxfile::read_key_file("new.key"));
///     ring.use(newId);                                   // seals from now on
///     config.add("password", ring.seal("correct horse", "db password"));
///     std::string const password = ring.open(config.query("password")).get<std::string>();
///
/// A ring copies no key and wipes those that it drops. It is moved, never copied.
///
/// What a key id is worth. It is in clear text and not authenticated, so somebody who can write a
/// sealed value can put any id there. A value with a wrong id does not open: the ring has no key of
/// that id, or the key does not fit. What follows:
/// - The writer of a value chooses the key. A ring opens whatever a holder of any of its keys
///   sealed, so use a ring for one purpose, and another ring for other writers.
/// - Somebody who has an old key can forge values as long as the ring has it. After a leak, reseal
///   from a copy that you trust, and `remove` the key: to `use` another one is not enough.
/// - The id proves nothing before the value is opened: neither which key sealed it, nor that the
///   value is damaged when the key is missing.
///
/// Cost. O(log n) comparisons of ids to find a key.
///
/// Threads. One object: many readers or one writer. All const functions may be called at the same
/// time.
///
/// Errors. The functions that open and seal raise what those in seal.h raise, and
/// error.vxattribute.value.secured.key.unknown if the ring lacks the key. The parameters `category`
/// and `instanceId` of that failure name it. After any failure the ring is as it was.
class VXATTRIBUTE_API KeyRing {
  public:
    using KeyId = SecuredValue::KeyId;

    KeyRing() noexcept;

    /// Takes over the keys; the source is empty afterwards.
    KeyRing(KeyRing && other) noexcept;

    /// As the constructor; the old keys are wiped.
    KeyRing & operator=(KeyRing && other) noexcept;

    KeyRing(KeyRing const &) = delete;
    KeyRing & operator=(KeyRing const &) = delete;

    /// Wipes all keys.
    ~KeyRing();

    /// Adds a key. The first key of a ring is also the current one, which seals.
    ///
    ///     ring.add({"login", vxcore::Uuid::random()}, vxcrypto::Key::random());
    ///
    /// @param key  16 or 32 bytes. It is empty afterwards, and unchanged if this raises.
    /// @raises error.vxattribute.value.secured.key.duplicate: the ring has a key of that id.
    /// @raises error.vxattribute.value.secured.keysize: the key is of another size.
    void add(KeyId key_id, vxcrypto::Key && key);

    /// Makes the key of that id the current one, which seals. The others still open.
    ///
    /// @raises error.vxattribute.value.secured.key.unknown: there is none.
    void use(KeyId const & key_id);

    /// Drops and wipes the key of that id. If it was the current one, call `use` before sealing.
    ///
    /// @return false if there is none.
    bool remove(KeyId const & key_id) noexcept;

    bool contains(KeyId const & key_id) const noexcept { return m_keys.contains(key_id); }

    /// The number of keys.
    std::size_t size() const noexcept { return m_keys.size(); }

    /// The id of the current key; null if there is none.
    ///
    /// @keeps  Valid until the key is removed, or the ring is assigned to or destroyed.
    KeyId const * current() const noexcept VXCORE_LIFETIMEBOUND {
        return m_current == nullptr ? nullptr : &m_current->first;
    }

    /// Seals a value, or a key, under the current key. Key and key id are in the result: see
    /// seal.h.
    [[nodiscard]] SecuredValue seal(AttributeValue const & value,
                                    std::string annotation = {}) const;
    [[nodiscard]] SecuredValue seal_key(vxcrypto::Key const & key_to_wrap,
                                        std::string annotation = {}) const;

    /// Opens a value, or a key, with the key that its key id names.
    [[nodiscard]] AttributeValue open(SecuredValue const & sealed) const;
    [[nodiscard]] AttributeValue open(AttributeValue const & sealed) const;
    [[nodiscard]] vxcrypto::Key open_key(SecuredValue const & sealed) const;
    [[nodiscard]] vxcrypto::Key open_key(AttributeValue const & sealed) const;

    /// The same content under the current key: see `reseal_with`. A value that already has the id
    /// of the current key is sealed anew too.
    [[nodiscard]] SecuredValue reseal(SecuredValue const & sealed) const;
    [[nodiscard]] SecuredValue reseal(AttributeValue const & sealed) const;

  private:
    using Keys = std::map<KeyId, vxcrypto::Key>;

    Keys::value_type const & current_entry() const;
    vxcrypto::Key const & key_of(SecuredValue const & sealed) const;
    void swap(KeyRing & other) noexcept;

    Keys m_keys;
    Keys::value_type const * m_current = nullptr; // in m_keys
};

} // namespace vxattribute
