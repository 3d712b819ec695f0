#pragma once

#include "vxattribute/export.h"
#include "vxattribute/fwd.h"
#include "vxcore/static_instance.h"
#include "vxcore/string_key.h"
#include "vxcore/text_size.h"
#include "vxcore/transfer_source.h"
#include "vxserialize/fwd.h"

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

namespace vxattribute {

/// The name of an attribute: a handle on an interned string.
///
/// Equality and order go by the address of the token and never touch the characters. The order is
/// total for as long as the names live; it is not alphabetical and means nothing to another
/// process.
///
/// Cost. Making a name from characters hashes them and takes a lock: make the names you use once,
/// as statics, and pass those. Everything else is one pointer; a copy is one atomic count.
///
///     static AttributeName const port("port");
///     map.add(port, 8080);
class VXATTRIBUTE_API AttributeName {
  public:
    /// The empty name.
    constexpr AttributeName() noexcept = default;

    AttributeName(char const * text) : m_key(std::string_view(text)) {}

    AttributeName(std::nullptr_t) = delete;

    AttributeName(char const * data, unsigned int size) : m_key(std::string_view(data, size)) {}

    AttributeName(std::string_view text) : m_key(text) {}

    AttributeName(std::string const & text) : m_key(text) {}

    AttributeName(vxcore::StringKey key) noexcept : m_key(std::move(key)) {}

    AttributeName(AttributeName const &) noexcept = default;
    AttributeName(AttributeName &&) noexcept = default;

    AttributeName(vxcore::TransferSource<AttributeName> source) noexcept
        : m_key(std::move(source.get().m_key)) {}

    /// A copy of the name that the instance holds.
    ///
    /// @raises error.vxcore.destroyed: the instance has ended. So do all forms with an instance.
    AttributeName(vxcore::StaticInstance<AttributeName> const & instance)
        : AttributeName(instance.get()) {}

    AttributeName(vxcore::StaticInstance<AttributeName const> const & instance)
        : AttributeName(instance.get()) {}

    ~AttributeName() = default;

    AttributeName & operator=(AttributeName other) noexcept {
        swap(other);
        return *this;
    }

    AttributeName & operator=(vxcore::StaticInstance<AttributeName> const & instance) {
        return *this = instance.get();
    }

    AttributeName & operator=(vxcore::StaticInstance<AttributeName const> const & instance) {
        return *this = instance.get();
    }

    /// Looks a text up without interning it: names that strangers send leave no trace.
    ///
    /// @return false when no such name is alive, so that no map can hold it; `name` is unchanged.
    static bool find_interned(std::string_view text, AttributeName & name) noexcept {
        return vxcore::StringKey::find_interned(text, name.m_key);
    }

    vxcore::StringKey const & key() const noexcept VXCORE_LIFETIMEBOUND { return m_key; }

    std::string const & value() const noexcept VXCORE_LIFETIMEBOUND { return m_key.value(); }

    char const * data() const noexcept VXCORE_LIFETIMEBOUND { return value().data(); }

    unsigned int size() const noexcept { return static_cast<unsigned int>(value().size()); }

    bool empty() const noexcept { return m_key.key_value() == nullptr; }

    void clear() noexcept { m_key.clear(); }

    void swap(AttributeName & other) noexcept { m_key.swap(other.m_key); }

    vxcore::TransferSource<AttributeName> transfer() noexcept {
        return vxcore::TransferSource<AttributeName>(*this);
    }

    unsigned int hash() const noexcept { return m_key.hash(); }

    /// Reads the name as one string, or as the decoder does. When that raises, the name stays.
    void read(vxserialize::Reader & reader);
    void read(vxserialize::Reader & reader, IAttributeNameDecoder & decoder);

    void write(vxserialize::Writer & writer) const;
    void write(vxserialize::Writer & writer, IAttributeNameEncoder & encoder) const;

    friend bool operator==(AttributeName const & a, AttributeName const & b) noexcept {
        return a.m_key == b.m_key;
    }

    friend bool operator<(AttributeName const & a, AttributeName const & b) noexcept {
        return a.m_key < b.m_key;
    }

    friend bool operator<=(AttributeName const & a, AttributeName const & b) noexcept {
        return !(b < a);
    }

    friend bool operator>(AttributeName const & a, AttributeName const & b) noexcept {
        return b < a;
    }

    friend bool operator>=(AttributeName const & a, AttributeName const & b) noexcept {
        return !(a < b);
    }

    friend vxserialize::Reader & operator>>(vxserialize::Reader & reader, AttributeName & name) {
        name.read(reader);
        return reader;
    }

    friend vxserialize::Writer & operator<<(vxserialize::Writer & writer,
                                            AttributeName const & name) {
        name.write(writer);
        return writer;
    }

    /// Inserts the characters as any string is inserted.
    friend VXATTRIBUTE_API std::ostream & operator<<(std::ostream & stream,
                                                     AttributeName const & name);

  private:
    vxcore::StringKey m_key;
};

/// The comparisons against a static instance, without a copy of its name.
template <typename Name>
concept StaticName = std::is_same_v<Name const, AttributeName const>;

template <StaticName Name>
bool operator==(AttributeName const & a, vxcore::StaticInstance<Name> const & b) {
    return a == b.get();
}

template <StaticName Name>
bool operator<(AttributeName const & a, vxcore::StaticInstance<Name> const & b) {
    return a < b.get();
}

template <StaticName Name>
bool operator<=(AttributeName const & a, vxcore::StaticInstance<Name> const & b) {
    return a <= b.get();
}

template <StaticName Name>
bool operator>(AttributeName const & a, vxcore::StaticInstance<Name> const & b) {
    return a > b.get();
}

template <StaticName Name>
bool operator>=(AttributeName const & a, vxcore::StaticInstance<Name> const & b) {
    return a >= b.get();
}

} // namespace vxattribute

/// Names may be keys of hashed containers. Values may not: +0.0 equals -0.0 and hashes apart.
template <>
struct std::hash<vxattribute::AttributeName> {
    std::size_t operator()(vxattribute::AttributeName const & name) const noexcept {
        return name.hash();
    }
};
