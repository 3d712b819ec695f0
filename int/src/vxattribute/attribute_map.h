#pragma once

#include "vxattribute/attribute.h"
#include "vxattribute/map_node_allocator.h"
#include "vxcore/ref_count_ptr.h"

#include <functional>
#include <map>
#include <utility>

namespace vxattribute {

namespace impl {
class MapBuilder;
}

/// The reading half of an attribute map: names to values, in the order of the names.
///
/// A map is one pointer to a shared holder. Copying a map copies the pointer; a change through a
/// map that shares its holder clones it first. Maps are element types of values, so they nest.
///
/// The order is that of AttributeName: by address, not alphabetical, and different from process to
/// process; see `sorted_by_name` for people. Looking up is a tree search with one pointer
/// comparison per level and no clone.
///
/// Depth. Maps may nest as deep as memory allows, and walks through them take a bounded stack; to
/// compare or to hash what lies more than 32 maps deep takes memory. Rendering stops at
/// `max_trace_depth`, the writers of streams stop at `vxserialize::max_open_containers`.
///
/// Threads. Separate map objects may be used from separate threads even when they share a holder.
/// One object: many readers or one writer.
///
/// A map that was moved from may only be destroyed or assigned to.
class VXATTRIBUTE_API AttributeMapBase {
  public:
    using value_type = std::pair<AttributeName const, AttributeValue>;
    using Map = std::map<AttributeName, AttributeValue, std::less<AttributeName>,
                         impl::MapNodeAllocator<value_type>>;
    using const_iterator = Map::const_iterator;

    class MapHolder;

    AttributeMapBase & operator=(AttributeMapBase const & other) noexcept = default;

    const_iterator begin() const noexcept;
    const_iterator end() const noexcept;
    bool empty() const noexcept;
    unsigned int size() const noexcept;

    bool exists(AttributeName const & name) const noexcept;
    /// 0 or 1.
    unsigned int count(AttributeName const & name) const noexcept;
    const_iterator find(AttributeName const & name) const noexcept;
    const_iterator lower_bound(AttributeName const & name) const noexcept;
    const_iterator upper_bound(AttributeName const & name) const noexcept;

    /// The value of that name, or `AttributeValue::null`.
    AttributeValue const & query(AttributeName const & name) const noexcept VXCORE_LIFETIMEBOUND;

    /// The value of that name, or a null pointer.
    AttributeValue const *
    query_ptr(AttributeName const & name) const noexcept VXCORE_LIFETIMEBOUND;

    /// Both maps' elements; on equal names the value of **this** map wins, the reverse of `add`.
    /// Linear in the two sizes; with one side empty the result shares the other's holder.
    AttributeMap merged_with(AttributeMapBase const & other) const;

    /// Pair by pair in map order, names before values; a prefix first. -1, 0 or 1. Good within one
    /// process only.
    int compare(AttributeMapBase const & other) const;

    /// Over all elements, at each call.
    unsigned int hash() const;

    /// A list of the elements, each a name and a value. With an encoder, names at every depth go
    /// through it.
    void write(vxserialize::Writer & writer) const;
    void write(vxserialize::Writer & writer, IAttributeNameEncoder & encoder) const;

    /// Renders the elements, one a line; an empty map writes nothing.
    void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                     unsigned int level) const;
    /// Renders each element on a line that begins with `prefix`, with `separator` between two.
    void write_trace(std::ostream & stream, char const * prefix, char const * separator) const;

    /// True at once for a shared holder; else pair by pair, values by their `==`.
    friend VXATTRIBUTE_API bool operator==(AttributeMapBase const & a, AttributeMapBase const & b);

    friend bool operator<(AttributeMapBase const & a, AttributeMapBase const & b) {
        return a.compare(b) < 0;
    }

    friend bool operator<=(AttributeMapBase const & a, AttributeMapBase const & b) {
        return !(b < a);
    }

    friend bool operator>(AttributeMapBase const & a, AttributeMapBase const & b) { return b < a; }

    friend bool operator>=(AttributeMapBase const & a, AttributeMapBase const & b) {
        return !(a < b);
    }

  protected:
    friend class impl::MapBuilder;

    using HolderPtr = vxcore::RefCountPtr<MapHolder>;

    AttributeMapBase();
    AttributeMapBase(AttributeMapBase const & other) noexcept = default;

    /// Takes the pointer over and leaves null.
    explicit AttributeMapBase(HolderPtr & holder) noexcept { m_pImpl.swap(holder); }

    explicit AttributeMapBase(vxserialize::Reader & reader);
    AttributeMapBase(vxserialize::Reader & reader, IAttributeNameDecoder & decoder);
    ~AttributeMapBase();

    /// For typed accessors: raise when the value is not of that type, or not a scalar of it.
    ///
    /// @raises error.vxattribute.value.type.mismatch,
    ///         error.vxattribute.value.cardinality.expectSingle
    static void check_attribute_of_type(AttributeName const & name, AttributeValue const & value,
                                        ValueTypeId const & expected);
    static void check_default_of_type(AttributeName const & name, AttributeValue const & value,
                                      ValueTypeId const & expected);
    static void check_scalar_of_type(AttributeName const & name, AttributeValue const & value,
                                     ValueTypeId const & expected);

    /// @raises error.vxattribute.map.attributeNotFound
    [[noreturn]] static void throw_attribute_not_found(AttributeName const & name);

    /// A holder with the elements of both; those of `first` win. Linear.
    static HolderPtr merged_aux(Map const & first, Map const & second);

    static void write_element_aux(vxserialize::Writer & writer, value_type const & element);
    static void write_element_aux(vxserialize::Writer & writer, IAttributeNameEncoder & encoder,
                                  value_type const & element);

    /// The holder of all default-constructed maps; null only before load-time code has run.
    static HolderPtr const sm_pEmptyImpl;

    HolderPtr m_pImpl;

  private:
    friend class MutableAttributeMap; // reads the holder of other maps

    void share_if_empty() noexcept;
};

/// The shared content of maps: a balanced tree whose nodes lie in runs of the holder's own.
///
/// A holder that dies takes the maps nested in it apart in a loop, however deep they nest.
class VXATTRIBUTE_API AttributeMapBase::MapHolder final
    : public vxcore::RefCounted<vxcore::AtomicRefCount> {
  public:
    MapHolder();
    explicit MapHolder(Map const & map);
    explicit MapHolder(vxserialize::Reader & reader);
    MapHolder(vxserialize::Reader & reader, IAttributeNameDecoder & decoder);

    HolderPtr clone() const;

    void write(vxserialize::Writer & writer) const;
    void write(vxserialize::Writer & writer, IAttributeNameEncoder & encoder) const;

    static void * operator new(std::size_t size);
    static void operator delete(void * holder, std::size_t size) noexcept;

  private:
    friend class AttributeMapBase;
    friend class MutableAttributeMap;
    friend class impl::MapBuilder;

    void destroy() noexcept override;
    ~MapHolder() override;

    /// The value of that name, made null when new. Fast when names come in map order.
    AttributeValue & find_or_make(AttributeName && name);
    /// Empties the tree and gives its memory back.
    void clear() noexcept;

    impl::MapNodeArena m_arena;
    Map m_map;
    MapHolder * m_nextDead = nullptr;
};

/// A map that is only read, and replaced as a whole.
class VXATTRIBUTE_API AttributeMap : public AttributeMapBase {
  public:
    /// Empty; costs no memory.
    AttributeMap() = default;
    AttributeMap(AttributeMap const &) noexcept = default;

    AttributeMap(AttributeMap && other) noexcept : AttributeMapBase(other.m_pImpl) {}

    /// Shares the holder.
    AttributeMap(AttributeMapBase const & other) noexcept : AttributeMapBase(other) {}

    /// Takes the holder over.
    AttributeMap(MutableAttributeMap && other) noexcept;

    AttributeMap(vxcore::TransferSource<AttributeMap> source) noexcept
        : AttributeMapBase(source.get().m_pImpl) {}

    /// Reads what `write` wrote; a name that comes twice keeps the value read last.
    explicit AttributeMap(vxserialize::Reader & reader) : AttributeMapBase(reader) {}

    AttributeMap(vxserialize::Reader & reader, IAttributeNameDecoder & decoder)
        : AttributeMapBase(reader, decoder) {}

    ~AttributeMap() = default;

    AttributeMap & operator=(AttributeMap other) noexcept {
        swap(other);
        return *this;
    }

    void swap(AttributeMap & other) noexcept { m_pImpl.swap(other.m_pImpl); }

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
/// A change clones the holder when it is shared, and works in place when it is not. When a change
/// raises, the map is as it was. Arguments may live inside the map itself.
///
/// The lookups that give changeable iterators clone a shared holder even for a caller who only
/// looks; call them on a const map to avoid it. Iterators stay good across changes of this map
/// until the map is copied: the change after that works on a clone.
class VXATTRIBUTE_API MutableAttributeMap : public AttributeMapBase {
  public:
    using iterator = Map::iterator;
    using AttributeMapBase::begin;
    using AttributeMapBase::end;
    using AttributeMapBase::find;
    using AttributeMapBase::lower_bound;
    using AttributeMapBase::upper_bound;

    /// Empty; the first change makes a holder.
    MutableAttributeMap() = default;
    MutableAttributeMap(MutableAttributeMap const &) noexcept = default;

    MutableAttributeMap(MutableAttributeMap && other) noexcept : AttributeMapBase(other.m_pImpl) {}

    /// Shares the holder.
    MutableAttributeMap(AttributeMapBase const & other) noexcept : AttributeMapBase(other) {}

    /// Takes the holder over.
    MutableAttributeMap(AttributeMap && other) noexcept : AttributeMapBase(other.m_pImpl) {}

    MutableAttributeMap(vxcore::TransferSource<MutableAttributeMap> source) noexcept
        : AttributeMapBase(source.get().m_pImpl) {}

    explicit MutableAttributeMap(vxserialize::Reader & reader) : AttributeMapBase(reader) {}

    MutableAttributeMap(vxserialize::Reader & reader, IAttributeNameDecoder & decoder)
        : AttributeMapBase(reader, decoder) {}

    ~MutableAttributeMap() = default;

    MutableAttributeMap & operator=(MutableAttributeMap other) noexcept {
        swap(other);
        return *this;
    }

    void swap(MutableAttributeMap & other) noexcept { m_pImpl.swap(other.m_pImpl); }

    vxcore::TransferSource<MutableAttributeMap> transfer() noexcept {
        return vxcore::TransferSource<MutableAttributeMap>(*this);
    }

    /// Sets the name to the value, whether it was there or not.
    MutableAttributeMap & add(AttributeName const & name, AttributeValue const & value);
    MutableAttributeMap & add(AttributeName const & name, AttributeValue && value);
    MutableAttributeMap & add(Attribute const & attribute);

    /// Adds all elements of the other map; on equal names the value of the **other** map wins.
    MutableAttributeMap & add(AttributeMapBase const & other);

    /// The value of that name, made null when absent.
    ///
    /// Never put the map itself into that value, as in `map[name].set(map)`: the reference is taken
    /// first, the copy then shares the holder that the reference leads into, and the map ends up
    /// inside itself. Walks over it never end (`hash`, `compare`, `write`), and its memory is never
    /// freed. Use `add(name, map)`, which copies first. Nothing checks this: docs/guide/maps.md
    /// explains why.
    AttributeValue & operator[](AttributeName const & name) VXCORE_LIFETIMEBOUND;

    /// Inserts an absent name; an existing value stays. True when inserted.
    std::pair<iterator, bool> insert(value_type const & element);
    iterator insert(iterator hint, value_type const & element);
    /// Inserts each absent name of the range, which may lie in any map.
    void insert(const_iterator first, const_iterator last);
    void insert(iterator first, iterator last);

    /// 1 if the name was there, else 0.
    unsigned int erase(AttributeName const & name);
    /// The iterators must have been taken since the map was last copied.
    iterator erase(iterator position);
    iterator erase(iterator first, iterator last);

    void clear();

    iterator begin();
    iterator end();
    iterator find(AttributeName const & name);
    iterator lower_bound(AttributeName const & name);
    iterator upper_bound(AttributeName const & name);

    /// Replaces the map by what the reader gives; when that raises, the map is as it was.
    void read(vxserialize::Reader & reader);
    void read(vxserialize::Reader & reader, IAttributeNameDecoder & decoder);

  protected:
    explicit MutableAttributeMap(HolderPtr & holder) noexcept : AttributeMapBase(holder) {}

  private:
    friend class AttributeMap;

    /// Makes the holder this map's alone. Gives the shared one that was let go, for the caller to
    /// keep while arguments may live in it; null when nothing changed.
    HolderPtr prepare_modify();
    Map & modifiable();
};

/// Lends an AttributeMap as a MutableAttributeMap for the length of a scope.
///
/// The holder moves over and back, so changes work in place when nobody else shares it. The target
/// must not be used while the reference lives.
///
///     WritableAttributeMapRef(map).add("port", 8080);
class VXATTRIBUTE_API WritableAttributeMapRef : public MutableAttributeMap {
  public:
    explicit WritableAttributeMapRef(AttributeMap & target) noexcept
        : MutableAttributeMap(target.m_pImpl), m_target(&target) {}

    WritableAttributeMapRef(WritableAttributeMapRef const &) = delete;
    WritableAttributeMapRef & operator=(WritableAttributeMapRef const &) = delete;

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

    /// As the map's own. What is nested more than 32 maps deep takes memory, so all three may raise
    /// std::bad_alloc.
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
