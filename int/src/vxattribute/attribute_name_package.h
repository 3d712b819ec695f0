#pragma once

#include "vxattribute/attribute_name.h"
#include "vxattribute/name_index_impl.h"
#include "vxcore/ref_count_ptr.h"
#include "vxcore/uuid.h"

#include <set>
#include <vector>

namespace vxattribute {

/// A list of names that two programs share, so that a stream may carry positions in place of names.
///
/// The names are sorted by their unsigned bytes, none comes twice, and the id is computed from
/// them: who holds the same names holds the same id, without a registry. A package never changes.
///
///     auto const package = AttributeNamePackage::Composer().add("host").add("port").compose();
///
/// Cost. 8 bytes a name and 16 to 32 for the index. Looking a name up is one probe of a hash table
/// by token; characters are touched only while a package is made.
///
/// Threads. Packages are shared by an atomic count and only read.
class VXATTRIBUTE_API AttributeNamePackage final
    : public vxcore::RefCounted<vxcore::AtomicRefCount> {
  public:
    using Ptr = vxcore::RefCountPtr<AttributeNamePackage const>;

    class Composer;
    struct IdLess;
    struct IdEquals;

    AttributeNamePackage(AttributeNamePackage const &) = delete;
    AttributeNamePackage & operator=(AttributeNamePackage const &) = delete;

    /// A package of the names, in any order.
    ///
    /// @raises error.vxattribute.name.package.duplicateName: a name comes twice.
    static Ptr create(std::vector<AttributeName> names);
    static Ptr create(std::set<AttributeName> const & names);

    /// Reads what `write` wrote. Nothing is put right: the id covers the names as they stand.
    ///
    /// @raises error.vxattribute.name.package.serialization: the names are not sorted; else, the
    ///         id is not theirs.
    ///         error.vxattribute.name.package.duplicateName: else, a name comes twice.
    static Ptr create(vxserialize::Reader & reader);

    vxcore::Uuid const & id() const noexcept VXCORE_LIFETIMEBOUND { return m_id; }

    unsigned int size() const noexcept { return static_cast<unsigned int>(m_names.size()); }

    bool empty() const noexcept { return m_names.empty(); }

    AttributeName const * begin() const noexcept VXCORE_LIFETIMEBOUND { return m_names.data(); }

    AttributeName const * end() const noexcept VXCORE_LIFETIMEBOUND { return begin() + size(); }

    /// @raises std::out_of_range: `position` is not below `size()`.
    AttributeName const & at(unsigned int position) const VXCORE_LIFETIMEBOUND {
        if (position >= size()) {
            throw_out_of_range();
        }
        return m_names[position];
    }

    /// The name's place in the package; `end()` when it is not there.
    AttributeName const * find(AttributeName const & name) const noexcept VXCORE_LIFETIMEBOUND {
        unsigned int const position = m_index.find(begin(), name);
        return position == impl::NameIndex::sm_none ? end() : begin() + position;
    }

    /// 0 or 1.
    unsigned int count(AttributeName const & name) const noexcept {
        return find(name) == end() ? 0 : 1;
    }

    /// A record of the id and the list of the names.
    void write(vxserialize::Writer & writer) const;

  private:
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

/// Collects names, each of which counts once however often it comes. One object, one thread.
///
/// A failure leaves the names that were there.
class VXATTRIBUTE_API AttributeNamePackage::Composer {
  public:
    Composer() = default;

    explicit Composer(AttributeName const & name) { add(name); }

    Composer & add(AttributeName const & name);

    /// As `add`, so that a composer can be handed on as a function of names.
    Composer & operator()(AttributeName const & name) { return add(name); }

    /// All names of the package; of a null pointer none.
    Composer & add(Ptr const & package);

    /// The composer stays as it is and may go on collecting.
    Ptr compose() const { return create(m_names); }

  private:
    std::set<AttributeName> m_names;
};

/// Order by id; a null pointer comes first.
struct AttributeNamePackage::IdLess {
    bool operator()(Ptr const & a, Ptr const & b) const noexcept {
        return a && b ? a->id() < b->id() : static_cast<bool>(b);
    }
};

/// Equal ids, which means equal names; or two null pointers.
struct AttributeNamePackage::IdEquals {
    bool operator()(Ptr const & a, Ptr const & b) const noexcept {
        return a && b ? a->id() == b->id() : !a && !b;
    }
};

/// Writes the package; a null pointer as the null element.
VXATTRIBUTE_API vxserialize::Writer & operator<<(vxserialize::Writer & writer,
                                                 AttributeNamePackage::Ptr const & package);

/// Reads a package or a null pointer; after a failure `package` is as it was.
VXATTRIBUTE_API vxserialize::Reader & operator>>(vxserialize::Reader & reader,
                                                 AttributeNamePackage::Ptr & package);

} // namespace vxattribute
