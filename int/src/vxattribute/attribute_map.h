#pragma once

#include "vxattribute/attribute.h"
#include "vxattribute/attribute_tree_impl.h"
#include "vxcore/ref_count_ptr.h"

#include <utility>

namespace vxattribute {

namespace impl {
class MapBuilder;
} // namespace impl

/// The reading half of an attribute map: names to values, in the order of the names.
///
/// A map is one pointer to a shared holder. Copying a map copies the pointer; a change through a
/// map that shares its holder clones it first. Maps are an element type of values, so they nest.
/// A map that was moved from may only be destroyed or assigned to.
///
/// Order. That of AttributeName: by address, not alphabetical, and different from process to
/// process. Use `sorted_by_name` for output that people read.
///
/// Cost. A copy is one atomic count. A lookup is a tree search, O(log n) with one comparison of
/// pointers per level, and never clones. Below, n is the number of elements of this map.
///
/// Validity. Iterators and references hold until the element is removed, the map is assigned to or
/// destroyed, or a change clones the holder (see MutableAttributeMap).
///
/// Depth. Maps may nest as deep as memory allows, and walks through them take a bounded stack.
/// Comparing and hashing take memory for what is nested more than 32 maps deep. Rendering stops at
/// `max_trace_depth`, the writers of streams at `vxserialize::max_open_containers`.
///
/// Threads. Separate map objects may be used from separate threads even when they share a holder.
/// One object: many readers or one writer.
class VXATTRIBUTE_API AttributeMapBase {
  public:
    /// An element: a name, which cannot be changed, and its value.
    using value_type = std::pair<AttributeName const, AttributeValue>;
    /// The balanced tree of a holder.
    using Map = impl::AttributeTree;
    /// A bidirectional iterator, as those of `std::map`.
    using const_iterator = Map::const_iterator;

    class MapHolder;

    /// Shares the other map's holder: O(1).
    AttributeMapBase & operator=(AttributeMapBase const & other) noexcept = default;

    /// A walk over the elements, in map order; a step is O(1) on average.
    const_iterator begin() const noexcept VXCORE_LIFETIMEBOUND;
    const_iterator end() const noexcept VXCORE_LIFETIMEBOUND;

    /// Whether there are elements, and how many: O(1).
    bool empty() const noexcept;
    unsigned int size() const noexcept;

    /// Whether the name has a value; null counts as one. As a number: 1 or 0.
    bool exists(AttributeName const & name) const noexcept;
    unsigned int count(AttributeName const & name) const noexcept;

    /// The element of that name, or `end()`.
    const_iterator find(AttributeName const & name) const noexcept VXCORE_LIFETIMEBOUND;

    /// The first element whose name is not below `name`, or is above it, in map order.
    const_iterator lower_bound(AttributeName const & name) const noexcept VXCORE_LIFETIMEBOUND;
    const_iterator upper_bound(AttributeName const & name) const noexcept VXCORE_LIFETIMEBOUND;

    /// The value of that name, or `AttributeValue::null`, which is never destroyed.
    AttributeValue const & query(AttributeName const & name) const noexcept VXCORE_LIFETIMEBOUND;

    /// The value of that name, or a null pointer.
    AttributeValue const *
    query_ptr(AttributeName const & name) const noexcept VXCORE_LIFETIMEBOUND;

    /// A map of both maps' elements. On equal names the value of **this** map is used, the reverse
    /// of `add`. Nested maps are values like any other; `merged_deep` merges them too.
    ///
    /// @cost  O(n + other.size()). O(1) when one of the two is empty: the result shares the other.
    AttributeMap merged_with(AttributeMapBase const & other) const;

    /// Compares pair by pair in map order, each name before its value; a prefix orders first. The
    /// result is -1, 0 or 1 and means something within one process only.
    ///
    /// @cost   Up to the first difference. Elements that maps share are compared like others.
    /// @raises std::bad_alloc: for maps nested more than 32 deep, as the operators and `hash`.
    int compare(AttributeMapBase const & other) const;

    /// Equal maps have equal hashes within one process, apart from values of +0.0 and -0.0.
    ///
    /// @cost  O(content) at each call; nothing is stored.
    unsigned int hash() const;

    /// Writes a list of the elements, each a name and a value. With an encoder, names at every
    /// depth go through it.
    ///
    /// The elements are in map order, so the bytes are not stable between processes;
    /// `write_attribute_map` can sort them (attribute_value_marshaler.h).
    void write(vxserialize::Writer & writer) const;
    void write(vxserialize::Writer & writer, IAttributeNameEncoder & encoder) const;

    /// Renders the elements, one a line, in map order unless the formatter sorts names. An empty
    /// map writes nothing.
    ///
    /// @param level  Indentation of the lines, in steps of the formatter.
    void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                     unsigned int level) const;
    /// Renders each element on a line that begins with `prefix`, with `separator` between two.
    void write_trace(std::ostream & stream, char const * prefix, char const * separator) const;

    /// Maps that share a holder are equal, without a look at their elements. Otherwise sizes, names
    /// and values are compared, the values by `==`: see docs/guide/comparison.md.
    friend VXATTRIBUTE_API bool operator==(AttributeMapBase const & a, AttributeMapBase const & b);

    /// The order of `compare`.
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

    /// Empty, on the shared empty holder; otherwise a map on the other's holder.
    AttributeMapBase();
    AttributeMapBase(AttributeMapBase const & other) noexcept = default;

    /// Takes the pointer over and leaves null.
    explicit AttributeMapBase(HolderPtr & holder) noexcept { m_pImpl.swap(holder); }

    /// Reads what `write` wrote; an empty map shares the empty holder.
    explicit AttributeMapBase(vxserialize::Reader & reader);
    AttributeMapBase(vxserialize::Reader & reader, IAttributeNameDecoder & decoder);
    /// Not virtual: do not delete maps through their base.
    ~AttributeMapBase();

    /// Checks for typed accessors, whose messages name the attribute: attribute_access.h has some.
    ///
    /// @raises error.vxattribute.value.type.mismatch: the value, or the default, has another type.
    /// @raises error.vxattribute.value.cardinality.expectSingle: `check_scalar_of_type` of no or
    ///         several elements.
    static void check_attribute_of_type(AttributeName const & name, AttributeValue const & value,
                                        ValueTypeId const & expected);
    static void check_default_of_type(AttributeName const & name, AttributeValue const & value,
                                      ValueTypeId const & expected);
    static void check_scalar_of_type(AttributeName const & name, AttributeValue const & value,
                                     ValueTypeId const & expected);

    /// The failure of accessors that demand a value.
    ///
    /// @raises error.vxattribute.map.attributeNotFound: always.
    [[noreturn]] static void throw_attribute_not_found(AttributeName const & name);

    /// A holder with the elements of both; on equal names those of `first`. Linear in the sizes.
    static HolderPtr merged_aux(Map const & first, Map const & second);

    static void write_element_aux(vxserialize::Writer & writer, value_type const & element);
    static void write_element_aux(vxserialize::Writer & writer, IAttributeNameEncoder & encoder,
                                  value_type const & element);

    /// The holder of all default-constructed maps; null only before load-time code has run, when
    /// each map makes its own.
    static HolderPtr const sm_pEmptyImpl;

    HolderPtr m_pImpl;

  private:
    friend class MutableAttributeMap; // reads the holder of other maps
};

/// The shared content of maps: a balanced tree. The first nodes are in the block of the holder.
///
/// It is written only while one map refers to it. Destroying it destroys the maps nested in it in a
/// loop, so that their depth takes no stack.
class VXATTRIBUTE_API AttributeMapBase::MapHolder final
    : public vxcore::RefCounted<vxcore::AtomicRefCount> {
  public:
    /// Empty, or a copy of the tree with all nodes in one run: O(map.size()).
    MapHolder();
    explicit MapHolder(Map const & map);
    explicit MapHolder(vxserialize::Reader & reader);
    MapHolder(vxserialize::Reader & reader, IAttributeNameDecoder & decoder);

    /// A holder with the same names and with copies of the values: O(n), with at most one
    /// allocation for all nodes. The clone of an empty one has room for a few elements.
    HolderPtr clone() const;

    Map const & map() const noexcept VXCORE_LIFETIMEBOUND { return m_map; }

    void write(vxserialize::Writer & writer) const;
    void write(vxserialize::Writer & writer, IAttributeNameEncoder & encoder) const;

    /// Holders, and the nodes of their trees, come from the cache of blocks that values use.
    static void * operator new(std::size_t size);
    static void operator delete(void * holder, std::size_t size) noexcept;

  private:
    friend class AttributeMapBase;
    friend class MutableAttributeMap;
    friend class impl::MapBuilder;

    /// An empty holder that has memory for `room` elements, or their number at least: O(1).
    static HolderPtr make(std::size_t room);

    /// With the memory for `room` nodes behind the object, in the same block.
    explicit MapHolder(unsigned int room) noexcept;

    void destroy() noexcept override;
    ~MapHolder() override;

    unsigned int m_room = 0; // nodes for which the block has memory
    Map m_map;
    MapHolder * m_nextDead = nullptr; // in the queue of holders to be deleted
};

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
/// docs/guide/maps.md says more. A lookup that only reads is better made through a const map, which
/// never clones.
class VXATTRIBUTE_API MutableAttributeMap : public AttributeMapBase {
  public:
    using iterator = Map::iterator;
    using AttributeMapBase::begin;
    using AttributeMapBase::end;
    using AttributeMapBase::find;
    using AttributeMapBase::lower_bound;
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

    /// The value of that name, which is added with null when absent: O(log n).
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
