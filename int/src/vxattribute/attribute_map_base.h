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

    /// The same as `query`: nothing is added for an absent name.
    ///
    ///     std::string const & host = config["host"].get<std::string>();
    AttributeValue const &
    operator[](AttributeName const & name) const noexcept VXCORE_LIFETIMEBOUND {
        return query(name);
    }

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

} // namespace vxattribute
