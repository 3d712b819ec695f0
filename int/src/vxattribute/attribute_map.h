#pragma once

#include "vxattribute/attribute_map_base.h"

namespace vxattribute {

/// A map that is only read, and replaced as a whole.
///
///     AttributeMap const map = make_map({{"host", "localhost"}, {"port", 8080}});
///     for (auto const & [name, value] : map) { ... }
///
/// To change one, copy it into a MutableAttributeMap, or lend it with a WritableAttributeMapRef.
class VXATTRIBUTE_API AttributeMap : public AttributeMapBase {
  public:
    /// Empty; takes no memory.
    AttributeMap() = default;
    AttributeMap(AttributeMap const &) noexcept = default;

    AttributeMap(AttributeMap && other) noexcept : AttributeMapBase(other.m_pImpl) {}

    /// Shares the holder: O(1).
    AttributeMap(AttributeMapBase const & other) noexcept : AttributeMapBase(other) {}

    /// Takes the holder over, as the move constructor and the one that follows: the source may only
    /// be destroyed or assigned to.
    AttributeMap(MutableAttributeMap && other) noexcept;

    AttributeMap(vxcore::TransferSource<AttributeMap> source) noexcept
        : AttributeMapBase(source.get().m_pImpl) {}

    /// Reads what `write` wrote; a name that comes twice keeps the value read last.
    explicit AttributeMap(vxserialize::Reader & reader) : AttributeMapBase(reader) {}

    AttributeMap(vxserialize::Reader & reader, IAttributeNameDecoder & decoder)
        : AttributeMapBase(reader, decoder) {}

    ~AttributeMap() = default;

    /// Replaces the map; the old holder is released.
    AttributeMap & operator=(AttributeMap other) noexcept {
        swap(other);
        return *this;
    }

    /// Exchanges the holders: O(1).
    void swap(AttributeMap & other) noexcept { m_pImpl.swap(other.m_pImpl); }

    /// Offers the map to a constructor that takes it over. The source refers to this object.
    vxcore::TransferSource<AttributeMap> transfer() noexcept {
        return vxcore::TransferSource<AttributeMap>(*this);
    }

  private:
    friend class AttributeMapBase;
    friend class MutableAttributeMap;
    friend class WritableAttributeMapRef;
    friend class impl::MapBuilder;

    explicit AttributeMap(HolderPtr & holder) noexcept : AttributeMapBase(holder) {}
};

/// A map that can be changed.
///
///     MutableAttributeMap map;
///     map.add("host", "localhost").add("port", 8080);
///     map["retries"].set(3);
///
/// A change clones the holder when it is shared, which is O(n), and works in place when it is not.
/// The costs below are those of a change in place. When a change raises, the map is as it was.
/// Arguments may live inside the map itself.
///
/// References and iterators of the changeable lookups (`operator[]`, `begin`, `find` and the
/// others) lead straight into the holder. They stay valid while this map is changed, until their
/// element is erased. **Do not write through one after the map was copied**: it leads into the
/// holder that the copy now shares, so the write changes the copy as well. Nothing checks this.
///
///     AttributeValue & value = map["a"];
///     AttributeMap const copy = map;
///     value.set(2);      // wrong: `copy` is changed
///     map["a"].set(2);   // right: looking up again clones the shared holder first
///
/// docs/guide/values-and-maps.md says more. A lookup that only reads is better made through a const
/// map, which never clones.
class VXATTRIBUTE_API MutableAttributeMap : public AttributeMapBase {
  public:
    using iterator = Map::iterator;
    using AttributeMapBase::begin;
    using AttributeMapBase::end;
    using AttributeMapBase::find;
    using AttributeMapBase::lower_bound;
    using AttributeMapBase::operator[];
    using AttributeMapBase::upper_bound;

    /// Empty; takes no memory until the first change. A copy shares the holder.
    MutableAttributeMap() = default;
    MutableAttributeMap(MutableAttributeMap const &) noexcept = default;

    MutableAttributeMap(MutableAttributeMap && other) noexcept : AttributeMapBase(other.m_pImpl) {}

    /// Shares the holder: O(1), and the next change clones it.
    MutableAttributeMap(AttributeMapBase const & other) noexcept : AttributeMapBase(other) {}

    /// Takes the holder over, as the move constructor and the one that follows: the source may only
    /// be destroyed or assigned to.
    MutableAttributeMap(AttributeMap && other) noexcept : AttributeMapBase(other.m_pImpl) {}

    MutableAttributeMap(vxcore::TransferSource<MutableAttributeMap> source) noexcept
        : AttributeMapBase(source.get().m_pImpl) {}

    /// Reads what `write` wrote, as AttributeMap does.
    explicit MutableAttributeMap(vxserialize::Reader & reader) : AttributeMapBase(reader) {}

    MutableAttributeMap(vxserialize::Reader & reader, IAttributeNameDecoder & decoder)
        : AttributeMapBase(reader, decoder) {}

    ~MutableAttributeMap() = default;

    /// Replaces the map; the old holder is released.
    MutableAttributeMap & operator=(MutableAttributeMap other) noexcept {
        swap(other);
        return *this;
    }

    /// Exchanges the holders: O(1). References into them lead into the other map afterwards.
    void swap(MutableAttributeMap & other) noexcept { m_pImpl.swap(other.m_pImpl); }

    /// Offers the map to a constructor that takes it over. The source refers to this object.
    vxcore::TransferSource<MutableAttributeMap> transfer() noexcept {
        return vxcore::TransferSource<MutableAttributeMap>(*this);
    }

    /// Sets the name to the value, whether it was there or not: O(log n). The value may be the map
    /// itself, which is added as it was.
    ///
    /// @return This map, so that calls can be chained.
    MutableAttributeMap & add(AttributeName const & name,
                              AttributeValue const & value) VXCORE_LIFETIMEBOUND;
    MutableAttributeMap & add(AttributeName const & name,
                              AttributeValue && value) VXCORE_LIFETIMEBOUND;
    MutableAttributeMap & add(Attribute const & attribute) VXCORE_LIFETIMEBOUND;

    /// Adds all elements of the other map; on equal names the value of the **other** map is used.
    ///
    /// @cost  O(m log n) for m elements of the other map; O(n + m) when this map shares its holder;
    ///        O(1) when one of the two is empty or both share a holder.
    MutableAttributeMap & add(AttributeMapBase const & other) VXCORE_LIFETIMEBOUND;

    /// The value of that name, which is added with null when absent: O(log n). In a constant map
    /// it is the lookup of AttributeMapBase instead, which adds nothing.
    ///
    /// Do not keep the reference across a copy of the map: see the class comment. For the same
    /// reason never put the map itself into the value, as in `map[name].set(map)`: the reference is
    /// taken first and leads into the holder that the copy shares, so the map ends up inside
    /// itself. Walks over it never end (`hash`, `compare`, `write`), and its memory is never freed.
    /// Use `add(name, map)`, which copies first.
    ///
    /// @keeps  The reference holds until the element is erased, or the map assigned to, cleared or
    ///         destroyed. For writing, it holds only until the map is copied.
    AttributeValue & operator[](AttributeName const & name) VXCORE_LIFETIMEBOUND;

    /// Inserts the element if its name is absent; an existing value stays.
    ///
    /// @return The element of that name, and for the first form whether it was inserted.
    /// @cost   O(log n). O(1) with a hint to the element that follows the new one in map order.
    std::pair<iterator, bool> insert(value_type const & element) VXCORE_LIFETIMEBOUND;
    iterator insert(iterator hint, value_type const & element) VXCORE_LIFETIMEBOUND;

    /// Inserts each absent name of the range, which may be of any map: O(log n) for each.
    void insert(const_iterator first, const_iterator last);
    void insert(iterator first, iterator last);

    /// Erases the element of that name and returns how many there were, 1 or 0: O(log n).
    unsigned int erase(AttributeName const & name);

    /// Erases the element, or the range, and returns the element that follows: O(1) for each.
    ///
    /// @pre  The iterators were taken since the map was last copied; those taken before lead into
    ///       the holder of the copy.
    iterator erase(iterator position) VXCORE_LIFETIMEBOUND;
    iterator erase(iterator first, iterator last) VXCORE_LIFETIMEBOUND;

    /// Erases all elements and frees their memory but for 1 KiB at most: O(n), O(1) when the holder
    /// is shared.
    void clear();

    /// The lookups of the base class for writing the values. They clone a shared holder, O(n), even
    /// when nothing is written.
    ///
    /// @keeps  Until the element is erased or the map is assigned to, cleared or destroyed. For
    ///         writing and erasing, only until the map is copied: a write through an older iterator
    ///         changes the copy too. Take new iterators after each copy.
    iterator begin() VXCORE_LIFETIMEBOUND;
    iterator end() VXCORE_LIFETIMEBOUND;
    iterator find(AttributeName const & name) VXCORE_LIFETIMEBOUND;
    iterator lower_bound(AttributeName const & name) VXCORE_LIFETIMEBOUND;
    iterator upper_bound(AttributeName const & name) VXCORE_LIFETIMEBOUND;

    /// Replaces the map by what the reader holds; when that raises, the map is as it was.
    void read(vxserialize::Reader & reader);
    void read(vxserialize::Reader & reader, IAttributeNameDecoder & decoder);

  protected:
    /// Takes the pointer over and leaves null.
    explicit MutableAttributeMap(HolderPtr & holder) noexcept : AttributeMapBase(holder) {}

  private:
    friend class AttributeMap;

    /// Makes sure that no other map shares the holder. Returns the one that it has replaced, for
    /// the caller to keep while arguments may live in it; null when nothing changed.
    HolderPtr prepare_modify();
    Map & modifiable();
};

/// Lends an AttributeMap as a MutableAttributeMap until the end of a scope.
///
/// The holder moves over and back, so changes work in place when no other map shares it. The target
/// must outlive the reference and must not be used before that ends.
///
///     WritableAttributeMapRef(map).add("port", 8080);
class VXATTRIBUTE_API WritableAttributeMapRef : public MutableAttributeMap {
  public:
    explicit WritableAttributeMapRef(AttributeMap & target VXCORE_LIFETIMEBOUND) noexcept
        : MutableAttributeMap(target.m_pImpl), m_target(&target) {}

    WritableAttributeMapRef(WritableAttributeMapRef const &) = delete;
    WritableAttributeMapRef & operator=(WritableAttributeMapRef const &) = delete;

    /// Gives the holder back to the target.
    ~WritableAttributeMapRef() { m_pImpl.swap(m_target->m_pImpl); }

  private:
    AttributeMap * m_target;
};

inline AttributeMap::AttributeMap(MutableAttributeMap && other) noexcept
    : AttributeMapBase(other.m_pImpl) {}

namespace impl {

template <>
struct VXATTRIBUTE_API ValueTypeTraits<AttributeMap> : ObjValueTypeTraits<AttributeMap> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeAttributeMap; }

    /// As the map's own operations. What is nested more than 32 maps deep takes memory, so all
    /// three may raise std::bad_alloc.
    static int compare(AttributeMap const & a, AttributeMap const & b);
    static bool equal(AttributeMap const & a, AttributeMap const & b);
    static unsigned int hash(AttributeMap const & a);
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, AttributeMap const * begin,
                            AttributeMap const * end);
};

} // namespace impl
} // namespace vxattribute

VXATTRIBUTE_EXTERN_ELEMENT(vxattribute::AttributeMap);
