#pragma once

/// The nodes of a map's tree and their memory. Include "vxattribute/attribute_map.h" instead: this
/// header is installed only because the iterators of maps are inline.

#include "vxattribute/attribute_name.h"
#include "vxattribute/attribute_value.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>
#include <utility>

namespace vxattribute::impl {

struct TreeNode;

/// The links of a node, or the head of a tree: the head is the parent of the root, which is its
/// lower child, and the end of every walk.
///
/// A side is 0 for lower names and 1 for higher ones. Links are aligned so that an address leaves
/// three bits for other use.
struct alignas(8) TreeLinks {
    static constexpr unsigned int even = 1; // balance: 2 * side when that side is one level higher
    static constexpr std::uintptr_t balance_bits = 3;
    static constexpr std::uintptr_t adjacent_bit = 4;
    static constexpr std::uintptr_t all_bits = balance_bits | adjacent_bit;

    TreeLinks * child[2];
    /// The address of the parent, the balance, and whether the next node in the order of names is
    /// known to be the next one in memory. 0 in the head, and in a node that is not in use.
    std::uintptr_t up;

    TreeLinks * parent() const noexcept { return reinterpret_cast<TreeLinks *>(up & ~all_bits); }

    void set_parent(TreeLinks const * to) noexcept {
        up = reinterpret_cast<std::uintptr_t>(to) | (up & all_bits);
    }

    unsigned int balance() const noexcept { return static_cast<unsigned int>(up & balance_bits); }

    void set_balance(unsigned int to) noexcept { up = (up & ~balance_bits) | to; }

    void set(TreeLinks const * parent, unsigned int balance) noexcept {
        up = reinterpret_cast<std::uintptr_t>(parent) | (up & adjacent_bit) | balance;
    }

    bool is_next_adjacent() const noexcept { return (up & adjacent_bit) != 0; }

    void set_next_adjacent(bool to) noexcept {
        up = (up & ~adjacent_bit) | (to ? adjacent_bit : 0);
    }

    /// The side of its parent on which this node is.
    unsigned int side() const noexcept { return parent()->child[1] == this ? 1 : 0; }

    /// The next node in the order of names; the head after the last one. O(1) on average. Through a
    /// map that was made in the order of names, it is a walk through memory.
    ///
    /// @pre  This is not the head.
    TreeLinks * next() const noexcept;

    /// The next node by the links alone.
    VXATTRIBUTE_API TreeLinks * linked_next() const noexcept;

    /// The node before this one; the last one before the head.
    ///
    /// @pre  This is not the first node, nor the head of an empty tree.
    VXATTRIBUTE_API TreeLinks * previous() const noexcept;
};

/// A node in use.
struct TreeNode : TreeLinks {
    using Element = std::pair<AttributeName const, AttributeValue>;

    template <typename Name, typename Value>
    TreeNode(Name && name, Value && value)
        : TreeLinks{{nullptr, nullptr}, even},
          element(std::forward<Name>(name), std::forward<Value>(value)) {}

    Element element;
};

inline TreeLinks * TreeLinks::next() const noexcept {
    if (is_next_adjacent()) {
        return const_cast<TreeNode *>(static_cast<TreeNode const *>(this) + 1);
    }
    return linked_next();
}

/// A bidirectional iterator over the elements of a map. It holds until its element is erased or the
/// map destroyed; that of the end holds as long as the map.
template <bool IsConst>
class TreeIterator {
  public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = TreeNode::Element;
    using difference_type = std::ptrdiff_t;
    using reference = std::conditional_t<IsConst, value_type const &, value_type &>;
    using pointer = std::conditional_t<IsConst, value_type const *, value_type *>;

    /// Of no map; equal to others of no map.
    TreeIterator() noexcept = default;

    /// A constant iterator from a changeable one.
    template <bool OtherIsConst>
    requires(IsConst && !OtherIsConst) TreeIterator(TreeIterator<OtherIsConst> const & other)
    noexcept : m_links(other.m_links) {}

    reference operator*() const noexcept { return static_cast<TreeNode *>(m_links)->element; }

    pointer operator->() const noexcept { return &**this; }

    TreeIterator & operator++() noexcept {
        m_links = m_links->next();
        return *this;
    }

    TreeIterator & operator--() noexcept {
        m_links = m_links->previous();
        return *this;
    }

    TreeIterator operator++(int) noexcept {
        TreeIterator const old = *this;
        ++*this;
        return old;
    }

    TreeIterator operator--(int) noexcept {
        TreeIterator const old = *this;
        --*this;
        return old;
    }

    friend bool operator==(TreeIterator const & a, TreeIterator const & b) noexcept {
        return a.m_links == b.m_links;
    }

  private:
    friend class AttributeTree;
    friend class TreeIterator<true>;

    explicit TreeIterator(TreeLinks * links) noexcept : m_links(links) {}

    TreeLinks * m_links = nullptr;
};

/// The memory of one tree's nodes: runs of them, the first of which may lie beside the tree.
///
/// Nodes are side by side in the order in which they were made, which spares a walk most of its
/// cache misses. Runs grow with the tree. They are freed all together, not with their nodes:
/// erasing elements returns no memory until the map is cleared or destroyed.
class VXATTRIBUTE_API TreeMemory {
  public:
    /// Bytes for a run of `count` nodes.
    static constexpr std::size_t run_bytes(std::size_t count) noexcept {
        return sizeof(Run) + count * sizeof(TreeNode);
    }

    TreeMemory() noexcept = default;

    /// @param room  `run_bytes(count)` bytes for the first nodes, which outlive this object.
    TreeMemory(void * room, std::size_t count) noexcept;

    TreeMemory(TreeMemory const &) = delete;
    TreeMemory & operator=(TreeMemory const &) = delete;

    ~TreeMemory() { clear(); }

    /// Memory of a node, for a tree that has `size` nodes.
    ///
    /// @raises std::bad_alloc: no memory for a run; nothing has changed.
    void * allocate(std::size_t size) {
        if (m_free != nullptr) {
            return std::exchange(m_free, m_free->child[0]);
        }
        if (m_next == m_end) {
            add_run(next_run(size));
        }
        return m_next++;
    }

    /// Destroys a node and keeps its memory for the next one.
    void free(TreeNode * node) noexcept {
        node->~TreeNode();
        m_free = ::new (static_cast<void *>(node)) TreeLinks{{m_free, nullptr}, 0};
    }

    /// Makes sure that the next `count` calls of `make_next` find memory.
    ///
    /// @raises std::bad_alloc: nothing has changed.
    void reserve(std::size_t count);

    /// Makes a node right after the one that was made last, within what was reserved.
    template <typename Name, typename Value>
    TreeNode * make_next(Name && name, Value && value) {
        ::new (static_cast<void *>(m_next))
            TreeNode(std::forward<Name>(name), std::forward<Value>(value));
        return m_next++;
    }

    /// Destroys all nodes in use, and frees all runs but the first one if it lies beside the tree.
    void clear() noexcept;

  private:
    struct alignas(TreeNode) Run {
        Run * next;
        unsigned int count; // of its nodes
        bool isBesideTree;

        TreeNode * nodes() noexcept { return reinterpret_cast<TreeNode *>(this + 1); }
    };

    static std::size_t next_run(std::size_t size) noexcept;

    void add_run(std::size_t count);
    void use_run(Run * run) noexcept;

    Run * m_runs = nullptr;       // the newest first
    TreeNode * m_next = nullptr;  // the first unused node of the newest run
    TreeNode * m_end = nullptr;   // of that run
    TreeLinks * m_free = nullptr; // by child[0]
};

} // namespace vxattribute::impl
