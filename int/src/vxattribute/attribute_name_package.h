#pragma once

#include "vxattribute/attribute_name.h"
#include "vxattribute/name_index_impl.h"
#include "vxcore/ref_count_ptr.h"
#include "vxcore/uuid.h"

#include <set>
#include <vector>

namespace vxattribute {

/// A list of names that two programs share, so that a stream can carry positions instead of names.
///
/// The names are different and sorted by their unsigned bytes. The id is computed from them, so
/// equal lists have equal ids without any registry. A package never changes.
///
///     auto const package = AttributeNamePackage::Composer().add("host").add("port").compose();
///
/// Cost. 8 bytes per name, and 16 to 32 per name for the index. Finding a name is a lookup in a
/// hash table by token, usually one probe. Characters are compared only while a package is made.
///
/// Threads. A package is immutable and its reference count is atomic, so threads may share it.
///
/// Errors. Besides those below, whatever makes a package raises std::bad_alloc. Nothing that exists
/// is changed by a failure.
///
/// docs/guide/names.md shows the use, docs/formats/names.md the stored form.
class VXATTRIBUTE_API AttributeNamePackage final
    : public vxcore::RefCounted<vxcore::AtomicRefCount> {
  public:
    /// How packages are held: the last pointer destroys the package.
    using Ptr = vxcore::RefCountPtr<AttributeNamePackage const>;

    class Composer;
    struct IdLess;
    struct IdEquals;

    AttributeNamePackage(AttributeNamePackage const &) = delete;
    AttributeNamePackage & operator=(AttributeNamePackage const &) = delete;

    /// Makes a package of names in any order. The result is never null; without names it is an
    /// empty package, which has an id too.
    ///
    /// @raises error.vxattribute.name.package.duplicateName: a name comes twice.
    ///         std::length_error: 2^32 - 1 names or more.
    /// @cost   O(n log n) comparisons of characters, and one MD5 over all names.
    static Ptr create(std::vector<AttributeName> names);
    static Ptr create(std::set<AttributeName> const & names);

    /// Reads what `write` wrote. The names must be sorted in the stream; they are not sorted here,
    /// since the id covers them in their order.
    ///
    /// @raises error.vxattribute.name.package.serialization: the names are not sorted, or the id
    ///         is not that of the names; checked in this order.
    ///         error.vxattribute.name.package.duplicateName: a name comes twice; checked last.
    ///         What the reader raises passes through.
    /// @cost   Memory grows with the names read, whatever the count in the stream.
    static Ptr create(vxserialize::Reader & reader);

    /// Equal for packages of equal names, in every process. It is the MD5 of the number of names
    /// and of the size and bytes of each, with two bit fields of a UUID set. It identifies a
    /// package; it does not protect against a forged one.
    vxcore::Uuid const & id() const noexcept VXCORE_LIFETIMEBOUND { return m_id; }

    // The names in their order, as an array. A position is what a stream carries. Pointers and
    // references are valid as long as the package lives.

    unsigned int size() const noexcept { return static_cast<unsigned int>(m_names.size()); }

    bool empty() const noexcept { return m_names.empty(); }

    AttributeName const * begin() const noexcept VXCORE_LIFETIMEBOUND { return m_names.data(); }

    AttributeName const * end() const noexcept VXCORE_LIFETIMEBOUND { return begin() + size(); }

    /// The name at that position.
    ///
    /// @raises std::out_of_range: `position` is not below `size()`.
    AttributeName const & at(unsigned int position) const VXCORE_LIFETIMEBOUND {
        if (position >= size()) {
            throw_out_of_range();
        }
        return m_names[position];
    }

    /// A pointer to the name in the package; `end()` when the package lacks it. Its distance from
    /// `begin()` is the position.
    AttributeName const * find(AttributeName const & name) const noexcept VXCORE_LIFETIMEBOUND {
        unsigned int const position = position_of(name);
        return position == impl::NameIndex::sm_none ? end() : begin() + position;
    }

    /// 0 or 1.
    unsigned int count(AttributeName const & name) const noexcept {
        return find(name) == end() ? 0 : 1;
    }

    /// Writes a record of the id and the list of the names.
    ///
    /// @raises What the writer raises.
    void write(vxserialize::Writer & writer) const;

  private:
    friend class AttributeNameEncoder;

    /// The position of the name, or `NameIndex::sm_none`.
    unsigned int position_of(AttributeName const & name) const noexcept {
        return m_index.find(begin(), name);
    }

    AttributeNamePackage(vxcore::Uuid const & id, std::vector<AttributeName> & names,
                         impl::NameIndex & index) noexcept;
    ~AttributeNamePackage() override;

    static vxcore::Uuid compute_id(std::vector<AttributeName> const & names);
    static Ptr create_aux(std::vector<AttributeName> & names);
    [[noreturn]] static void throw_out_of_range();

    vxcore::Uuid m_id;
    std::vector<AttributeName> m_names;
    impl::NameIndex m_index;
};

/// Collects the names of a package. A name that is added again changes nothing.
///
///     AttributeNamePackage::Composer names("host");
///     names.add(known);          // the names of another package
///     collect_names(map, names); // and those of a map: see collect_names.h
///     auto const package = names.compose();
///
/// Use an object from one thread only. An operation that raises changes nothing.
class VXATTRIBUTE_API AttributeNamePackage::Composer {
  public:
    /// Without names, or with one.
    Composer() = default;

    explicit Composer(AttributeName const & name) { add(name); }

    /// Adds one name and returns this object. O(log n).
    Composer & add(AttributeName const & name);

    /// The same as `add`, so that a composer can be passed as a function of names.
    Composer & operator()(AttributeName const & name) { return add(name); }

    /// Adds all names of the package; nothing for a null pointer.
    Composer & add(Ptr const & package);

    /// Makes a package of the names so far. The composer is unchanged and can collect more.
    ///
    /// @cost  As `create`.
    Ptr compose() const { return create(m_names); }

  private:
    std::set<AttributeName> m_names;
};

/// Orders packages by id; a null pointer comes first.
struct AttributeNamePackage::IdLess {
    bool operator()(Ptr const & a, Ptr const & b) const noexcept {
        return a && b ? a->id() < b->id() : static_cast<bool>(b);
    }
};

/// True for equal ids, which means equal names, and for two null pointers.
struct AttributeNamePackage::IdEquals {
    bool operator()(Ptr const & a, Ptr const & b) const noexcept {
        return a && b ? a->id() == b->id() : !a && !b;
    }
};

/// Writes the package, or the null element for a null pointer.
///
/// @raises What the writer raises.
VXATTRIBUTE_API vxserialize::Writer & operator<<(vxserialize::Writer & writer,
                                                 AttributeNamePackage::Ptr const & package);

/// Reads a package or a null pointer. When it raises, `package` is as it was.
///
/// @raises As `AttributeNamePackage::create` with a reader.
VXATTRIBUTE_API vxserialize::Reader & operator>>(vxserialize::Reader & reader,
                                                 AttributeNamePackage::Ptr & package);

} // namespace vxattribute
