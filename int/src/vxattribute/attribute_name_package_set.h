#pragma once

#include "vxattribute/attribute_name_package.h"

namespace vxattribute {

/// The packages that a coder works with, ordered by id. No two have the same id, and none is null.
/// A set never changes; `create_union` makes a new one.
///
///     auto const packages = AttributeNamePackageSet::create(package)->create_union(other);
///
/// Packages of a set may have names in common. An encoder takes such a name from the package that
/// it finds first.
///
/// Cost. One pointer per package. Sets are meant for few packages: `find` is linear, and making a
/// set sorts its packages. Packages are shared, never copied.
///
/// Threads. A set is immutable and its reference count is atomic, so threads may share it.
///
/// Errors. Whatever makes a set raises std::bad_alloc; nothing that exists is changed by a failure.
class VXATTRIBUTE_API AttributeNamePackageSet final
    : public vxcore::RefCounted<vxcore::AtomicRefCount> {
  public:
    /// How sets are held, and an iterator over their packages.
    using Ptr = vxcore::RefCountPtr<AttributeNamePackageSet const>;
    using const_iterator = AttributeNamePackage::Ptr const *;

    class Composer;

    AttributeNamePackageSet(AttributeNamePackageSet const &) = delete;
    AttributeNamePackageSet & operator=(AttributeNamePackageSet const &) = delete;

    /// The empty set, and the set of one package. A null pointer makes the empty set. The result is
    /// never null.
    static Ptr create();
    static Ptr create(AttributeNamePackage::Ptr const & package);

    /// Reads what `write` wrote. Of packages with the same id one is kept.
    ///
    /// @raises what `AttributeNamePackage::create` and the reader raise.
    static Ptr create(vxserialize::Reader & reader);

    /// Makes a set of the packages of this one and of the argument, which may be a package, a set,
    /// or a reader with what `write` wrote. A null pointer adds nothing. Of packages with the same
    /// id one is kept. This set does not change.
    ///
    /// @raises With a reader: as `create`.
    Ptr create_union(AttributeNamePackage::Ptr const & package) const;
    Ptr create_union(Ptr const & other) const;
    Ptr create_union(vxserialize::Reader & reader) const;

    // The packages, ordered by id, as an array of pointers that are not null. Iterators are valid
    // as long as the set lives.

    unsigned int size() const noexcept { return static_cast<unsigned int>(m_packages.size()); }

    bool empty() const noexcept { return m_packages.empty(); }

    const_iterator begin() const noexcept VXCORE_LIFETIMEBOUND { return m_packages.data(); }

    const_iterator end() const noexcept VXCORE_LIFETIMEBOUND { return begin() + size(); }

    /// The package with that id, or the first one that has the name; `end()` when there is none.
    ///
    /// @cost  Linear in the number of packages; for a name, one hash lookup in each.
    const_iterator find(vxcore::Uuid const & id) const noexcept VXCORE_LIFETIMEBOUND;
    const_iterator find(AttributeName const & name) const noexcept VXCORE_LIFETIMEBOUND;

    /// True when a name is in more than one package. The library itself never calls this: it is for
    /// programs that compose sets.
    ///
    /// @param duplicates  Receives all such names in place of its content. When null, the search
    ///                    ends at the first one.
    /// @cost  The number of names times the number of packages.
    bool check_duplicate_names(std::set<AttributeName> * duplicates) const;

    /// Writes a record of the list of the packages, each with its id and names.
    ///
    /// @raises What the writer raises.
    void write(vxserialize::Writer & writer) const;

  private:
    using Packages = std::vector<AttributeNamePackage::Ptr>;

    AttributeNamePackageSet() noexcept;
    explicit AttributeNamePackageSet(Packages & packages) noexcept;
    ~AttributeNamePackageSet() override;

    static Ptr create_aux(Packages & packages);
    static void read_append_aux(Packages & packages, vxserialize::Reader & reader);

    Packages m_packages;
};

/// Collects the packages of a set. Null pointers add nothing, and a package added twice is in the
/// set once. Use an object from one thread only. An operation that raises changes nothing.
///
///     auto const packages =
///         AttributeNamePackageSet::Composer(base).add(network).add(storage).compose();
///
/// For many packages this is cheaper than `create_union`, which makes a set at each call.
class VXATTRIBUTE_API AttributeNamePackageSet::Composer {
  public:
    /// Without packages, with one, or with those of a set.
    Composer() = default;

    explicit Composer(AttributeNamePackage::Ptr const & package) { add(package); }

    explicit Composer(Ptr const & packages) { add(packages); }

    /// Adds one package, or all of a set, and returns this object.
    Composer & add(AttributeNamePackage::Ptr const & package);
    Composer & add(Ptr const & packages);

    /// Makes a set of the packages so far. The composer is unchanged and can collect more.
    Ptr compose() const;

  private:
    Packages m_packages;
};

/// Writes the set, or the null element for a null pointer.
///
/// @raises What the writer raises.
VXATTRIBUTE_API vxserialize::Writer & operator<<(vxserialize::Writer & writer,
                                                 AttributeNamePackageSet::Ptr const & packages);

/// Reads a set or a null pointer. When it raises, `packages` is as it was.
///
/// @raises As `AttributeNamePackageSet::create` with a reader.
VXATTRIBUTE_API vxserialize::Reader & operator>>(vxserialize::Reader & reader,
                                                 AttributeNamePackageSet::Ptr & packages);

} // namespace vxattribute
