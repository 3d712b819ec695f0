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

/// The name of an attribute: a handle on an interned string. Names of equal characters share one
/// token for as long as any of them lives.
///
/// Order. Equality and order compare the addresses of the tokens and never touch the characters.
/// The order is total while the names live. It is not alphabetical and means nothing to another
/// process.
///
/// Life. A token is given up with the last name on it: freed, or kept for a while in case the text
/// comes again. So a name that is kept nowhere is interned each time it is made. Maps, queries and
/// packages keep theirs.
///
/// Cost. Making a name from characters hashes them and takes a lock: make the names you use once,
/// as statics, and pass those. Everything else handles one pointer; a copy is one atomic count.
///
/// Threads. Names may be made, copied and dropped in any thread. One object: many readers or one
/// writer.
///
/// Errors. Making a name raises std::bad_alloc and std::length_error. Reading raises what the
/// reader raises; the name is then as it was. Writing raises what the writer raises. The rest
/// raises nothing, apart from the forms with a `vxcore::StaticInstance`.
///
///     static AttributeName const port("port");
///     map.add(port, 8080);
///
/// Names in untrusted input are better looked up with `find_interned`, which makes no token:
///
///     AttributeName name;
///     bool const isKnown = AttributeName::find_interned(text, name) && map.exists(name);
class VXATTRIBUTE_API AttributeName {
  public:
    /// The empty name.
    constexpr AttributeName() noexcept = default;

    /// The name of these characters, interned anew or found among the living names. Any bytes are
    /// allowed; no characters make the empty name. Not explicit, so that texts can be passed where
    /// a name is expected: each such call interns.
    ///
    /// @cost  A hash of the characters and a lock. A new name takes one token.
    /// @param text  Ends with a null character; a null pointer literal does not compile.
    /// @raises std::length_error: beyond 2^32 - 1 bytes. std::bad_alloc: no memory for the token.
    /// So
    ///         do all that take characters.
    AttributeName(char const * text) : m_key(std::string_view(text)) {}

    AttributeName(std::nullptr_t) = delete;

    /// @param size  In bytes; `data` may contain zeros.
    AttributeName(char const * data, unsigned int size) : m_key(std::string_view(data, size)) {}

    AttributeName(std::string_view text) : m_key(text) {}

    AttributeName(std::string const & text) : m_key(text) {}

    /// Takes the key over: a name and a string key of the same characters share their token.
    AttributeName(vxcore::StringKey key) noexcept : m_key(std::move(key)) {}

    /// A copy shares the token: one atomic count. A source that was moved from is the empty name.
    AttributeName(AttributeName const &) noexcept = default;
    AttributeName(AttributeName &&) noexcept = default;

    /// Takes the name over and leaves the empty one.
    AttributeName(vxcore::TransferSource<AttributeName> source) noexcept
        : m_key(std::move(source.get().m_key)) {}

    /// A copy of the name that the instance holds.
    ///
    /// @raises error.vxcore.destroyed: the instance was destroyed. So do all forms that take one.
    AttributeName(vxcore::StaticInstance<AttributeName> const & instance)
        : AttributeName(instance.get()) {}

    AttributeName(vxcore::StaticInstance<AttributeName const> const & instance)
        : AttributeName(instance.get()) {}

    ~AttributeName() = default;

    /// Replaces the name; it does not raise, apart from the forms with an instance.
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

    /// Looks a text up without interning it, so that names from untrusted input take no memory.
    ///
    /// @return true when the name is alive, and then `name` is that name. When false, `name` is
    ///         unchanged and no map holds such a name. The empty name is always alive.
    /// @cost   As making a name: one hash of the characters and a lock.
    static bool find_interned(std::string_view text, AttributeName & name) noexcept {
        return vxcore::StringKey::find_interned(text, name.m_key);
    }

    /// The interned string, its characters and their number in bytes.
    ///
    /// @keeps  The reference to the key holds until this object is changed or destroyed; characters
    ///         hold while any name or key of them lives.
    vxcore::StringKey const & key() const noexcept VXCORE_LIFETIMEBOUND { return m_key; }

    std::string const & value() const noexcept VXCORE_LIFETIMEBOUND { return m_key.value(); }

    char const * data() const noexcept VXCORE_LIFETIMEBOUND { return value().data(); }

    unsigned int size() const noexcept { return static_cast<unsigned int>(value().size()); }

    /// True for the name without characters, which a map may contain like any other.
    bool empty() const noexcept { return m_key.key_value() == nullptr; }

    /// Makes it the empty name.
    void clear() noexcept { m_key.clear(); }

    /// Exchanges the tokens. No count touched.
    void swap(AttributeName & other) noexcept { m_key.swap(other.m_key); }

    /// Offers the name to a constructor or assignment that takes it over.
    ///
    /// @keeps  The source refers to this object.
    vxcore::TransferSource<AttributeName> transfer() noexcept {
        return vxcore::TransferSource<AttributeName>(*this);
    }

    /// The hash of the characters, computed at the first use and stored: O(1). It involves a secret
    /// of the process, so it differs from run to run: do not store it. 0 for the empty name.
    unsigned int hash() const noexcept { return m_key.hash(); }

    /// Reads the name as one string, or as the decoder does. The name is interned. Names from
    /// untrusted streams thus take memory while they are kept.
    ///
    /// @raises What reader and decoder raise; the name is then as it was.
    void read(vxserialize::Reader & reader);
    void read(vxserialize::Reader & reader, IAttributeNameDecoder & decoder);

    /// Writes the name as one string, or as the encoder does.
    ///
    /// @raises What writer and encoder raise.
    void write(vxserialize::Writer & writer) const;
    void write(vxserialize::Writer & writer, IAttributeNameEncoder & encoder) const;

    /// Each compares the addresses of the two tokens. For an order by characters, compare
    /// `value()`, or see sorted_by_name.h.
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

    /// `read` and `write` as operators, so that names can be mixed with other elements of a stream.
    friend vxserialize::Reader & operator>>(vxserialize::Reader & reader, AttributeName & name) {
        name.read(reader);
        return reader;
    }

    friend vxserialize::Writer & operator<<(vxserialize::Writer & writer,
                                            AttributeName const & name) {
        name.write(writer);
        return writer;
    }

    /// Inserts the characters with the width and fill of the stream, as a string.
    friend VXATTRIBUTE_API std::ostream & operator<<(std::ostream & stream,
                                                     AttributeName const & name);

  private:
    vxcore::StringKey m_key;
};

/// The name of a static instance, which may be constant. `vxcore::StaticInstance` detects names
/// that are used after their destruction, at the end of the process.
template <typename Name>
concept StaticName = std::is_same_v<Name const, AttributeName const>;

/// Comparisons with a static instance, without a copy of its name.
///
///     vxcore::StaticInstance<AttributeName const> const port("port"); // at namespace scope
///     if (attribute.name() == port) { ... }
///
/// @raises error.vxcore.destroyed: the instance was destroyed.
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

/// Names may be keys of hashed containers. Values may not: +0.0 equals -0.0 with another hash. The
/// order in such a container differs from process to process, as the hashes do.
///
///     std::unordered_map<vxattribute::AttributeName, Handler> handlers;
template <>
struct std::hash<vxattribute::AttributeName> {
    /// The stored hash: O(1).
    std::size_t operator()(vxattribute::AttributeName const & name) const noexcept {
        return name.hash();
    }
};
