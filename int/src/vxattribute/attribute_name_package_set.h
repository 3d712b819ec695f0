#pragma once

#include "vxattribute/attribute_name_package.h"

namespace vxattribute {

/// The packages that one coder works with: ordered by id, no id twice, none null. A set never
/// changes; the functions that add make a new one.
///
/// Packages of a set may overlap. A coder takes a shared name from the package it finds first.
///
/// Threads. Sets are shared by an atomic count and only read.
class VXATTRIBUTE_API AttributeNamePackageSet final
    : public vxcore::RefCounted<vxcore::AtomicRefCount> {
  public:
    using Ptr = vxcore::RefCountPtr<AttributeNamePackageSet const>;
    using const_iterator = AttributeNamePackage::Ptr const *;

    class Composer;

    AttributeNamePackageSet(AttributeNamePackageSet const &) = delete;
    AttributeNamePackageSet & operator=(AttributeNamePackageSet const &) = delete;

    /// The empty set, and the set of one package; of a null pointer the empty set too.
    static Ptr create();
    static Ptr create(AttributeNamePackage::Ptr const & package);

    /// Reads what `write` wrote; packages with an id that is there already are dropped.
    ///
    /// @raises what `AttributeNamePackage::create` raises.
    static Ptr create(vxserialize::Reader & reader);

    /// A new set of the packages of this one and the argument, or of those read. A null pointer
    /// adds nothing.
    Ptr create_union(AttributeNamePackage::Ptr const & package) const;
    Ptr create_union(Ptr const & other) const;
    Ptr create_union(vxserialize::Reader & reader) const;

    unsigned int size() const noexcept { return static_cast<unsigned int>(m_packages.size()); }

    bool empty() const noexcept { return m_packages.empty(); }

    const_iterator begin() const noexcept VXCORE_LIFETIMEBOUND { return m_packages.data(); }

    const_iterator end() const noexcept VXCORE_LIFETIMEBOUND { return begin() + size(); }

    /// The package of that id, or the first one that has the name; `end()` when there is none. Both
    /// walk the set.
    const_iterator find(vxcore::Uuid const & id) const noexcept VXCORE_LIFETIMEBOUND;
    const_iterator find(AttributeName const & name) const noexcept VXCORE_LIFETIMEBOUND;

    /// True when a name stands in more than one package. Such names go to `duplicates`, in place of
    /// what it held; it may be null, and then the first one ends the search.
    ///
    /// @cost Names times packages. Nothing here calls it: it is for who composes sets.
    bool check_duplicate_names(std::set<AttributeName> * duplicates) const;

    /// A record of the list of the packages.
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

/// Collects packages. Null pointers add nothing. One object, one thread.
class VXATTRIBUTE_API AttributeNamePackageSet::Composer {
  public:
    Composer() = default;

    explicit Composer(AttributeNamePackage::Ptr const & package) { add(package); }

    explicit Composer(Ptr const & packages) { add(packages); }

    Composer & add(AttributeNamePackage::Ptr const & package);
    Composer & add(Ptr const & packages);

    /// The composer stays as it is and may go on collecting.
    Ptr compose() const;

  private:
    Packages m_packages;
};

/// Writes the set; a null pointer as the null element.
VXATTRIBUTE_API vxserialize::Writer & operator<<(vxserialize::Writer & writer,
                                                 AttributeNamePackageSet::Ptr const & packages);

/// Reads a set or a null pointer; after a failure `packages` is as it was.
VXATTRIBUTE_API vxserialize::Reader & operator>>(vxserialize::Reader & reader,
                                                 AttributeNamePackageSet::Ptr & packages);

} // namespace vxattribute
