#pragma once

/// The tree of a map. Include "vxattribute/attribute_map.h" instead: this header is installed only
/// because the iterators of maps are inline.

#include "vxattribute/tree_node_impl.h"

namespace vxattribute::impl {

/// A balanced tree of names and values, ordered by the addresses of the names.
///
/// It is an AVL tree (Adelson-Velsky and Landis, 1962) whose nodes are linked to their parents, so
/// iterators and references hold until their own element is erased. Its height is at most 1.44
/// log2(n).
///
/// A tree that is made from elements in their order, as a copy is, is linked in one pass and has
/// all nodes in one run of memory.
///
/// When an operation raises, which std::bad_alloc from memory or a copied value can make it do, the
/// tree is as it was.
class VXATTRIBUTE_API AttributeTree {
  public:
    using value_type = TreeNode::Element;
    using iterator = TreeIterator<false>;
    using const_iterator = TreeIterator<true>;

    class Additions;

    AttributeTree() noexcept { reset(); }

    /// An empty tree with memory for its first nodes: see TreeMemory.
    AttributeTree(void * room, std::size_t count) noexcept : m_memory(room, count) { reset(); }

    /// Copies names and values: O(n).
    AttributeTree(AttributeTree const & other) : AttributeTree() { assign_copy(other); }

    AttributeTree & operator=(AttributeTree const &) = delete;
    ~AttributeTree() = default;

    const_iterator begin() const noexcept { return const_iterator(m_first); }

    const_iterator end() const noexcept { return const_iterator(head()); }

    iterator begin() noexcept { return iterator(m_first); }

    iterator end() noexcept { return iterator(head()); }

    bool empty() const noexcept { return m_size == 0; }

    std::size_t size() const noexcept { return m_size; }

    /// The element of that name, or the end.
    const_iterator find(AttributeName const & name) const noexcept {
        return const_iterator(find_node(key_of(name)));
    }

    iterator find(AttributeName const & name) noexcept { return iterator(find_node(key_of(name))); }

    /// The first element whose name is not below `name`, or is above it.
    const_iterator lower_bound(AttributeName const & name) const noexcept {
        return const_iterator(first_from(key_of(name)));
    }

    iterator lower_bound(AttributeName const & name) noexcept {
        return iterator(first_from(key_of(name)));
    }

    const_iterator upper_bound(AttributeName const & name) const noexcept {
        return const_iterator(first_from(key_of(name) + 1));
    }

    iterator upper_bound(AttributeName const & name) noexcept {
        return iterator(first_from(key_of(name) + 1));
    }

    /// Inserts the element unless its name is there. `value` is moved from only if it is not.
    ///
    /// @return The element of that name, and whether it was inserted.
    std::pair<iterator, bool> try_emplace(AttributeName const & name, AttributeValue && value);
    std::pair<iterator, bool> insert(value_type const & element);

    /// The same; O(1) if `hint` is the element that follows the new one.
    iterator insert(const_iterator hint, value_type const & element);

    /// The value of that name, which is inserted with null when absent.
    AttributeValue & operator[](AttributeName const & name) {
        return try_emplace(name, AttributeValue()).first->second;
    }

    /// Inserts an element after all others: O(1) on average.
    ///
    /// @pre  Its name is above all others.
    void append(value_type const & element);

    /// Makes the tree one of many elements at once: after `reserve` for all of them,
    /// `append_unlinked` for each in the order of names, and `link_appended`. In between the tree
    /// may only be destroyed.
    ///
    /// @pre  The tree was empty since it was made or cleared.
    void reserve(std::size_t count) { m_memory.reserve(count); }

    template <typename Name, typename Value>
    void append_unlinked(Name && name, Value && value) {
        m_last = m_memory.make_next(std::forward<Name>(name), std::forward<Value>(value));
        ++m_size;
    }

    void link_appended() noexcept;

    /// `reserve`, `append_unlinked` and `link_appended` for copies of the elements of `other`. When
    /// that raises, the tree may only be destroyed.
    void assign_copy(AttributeTree const & other);

    /// Erases the element, or the range, and returns the element that follows.
    iterator erase(const_iterator position) noexcept;
    iterator erase(const_iterator first, const_iterator last) noexcept;

    /// Erases the element of that name and returns how many there were.
    std::size_t erase(AttributeName const & name) noexcept;

    /// Erases all elements and frees their memory, but for that of the constructor.
    void clear() noexcept;

    /// True if the order, the links, the balances and the size are right; O(n). For tests.
    bool is_valid() const noexcept;

  private:
    /// Where a name is, or would be inserted.
    struct Place {
        TreeLinks * parent;
        TreeLinks * before; // the last node below it on the way; null if there is none
        TreeLinks * found;  // the node of that name; null if there is none
        unsigned int side;
    };

    static std::uintptr_t key_of(AttributeName const & name) noexcept {
        return reinterpret_cast<std::uintptr_t>(name.key().key_value());
    }

    static std::uintptr_t key_of(TreeLinks const * node) noexcept {
        return key_of(static_cast<TreeNode const *>(node)->element.first);
    }

    TreeLinks * head() const noexcept { return const_cast<TreeLinks *>(&m_head); }

    TreeLinks * root() const noexcept { return m_head.child[0]; }

    TreeLinks * find_node(std::uintptr_t key) const noexcept;
    TreeLinks * first_from(std::uintptr_t key) const noexcept;
    Place place_of(std::uintptr_t key) const noexcept;
    Place place_before(TreeLinks * next, std::uintptr_t key) const noexcept;
    TreeNode * make_node(AttributeName const & name, AttributeValue && value);
    iterator attach(TreeNode * node, Place const & place) noexcept;
    void remove(TreeLinks * node, TreeLinks * before) noexcept;
    void reset() noexcept;

    TreeLinks m_head; // its higher child is null
    TreeLinks * m_first;
    TreeLinks * m_last;
    std::size_t m_size;
    TreeMemory m_memory;
};

/// New nodes for a tree that are not in it yet, so that what can raise comes before any change.
class VXATTRIBUTE_API AttributeTree::Additions {
  public:
    /// @param tree  Must not be changed until the additions are committed or destroyed.
    explicit Additions(AttributeTree & tree) noexcept : m_tree(tree) {}

    Additions(Additions const &) = delete;
    Additions & operator=(Additions const &) = delete;

    /// Drops the nodes that are not committed.
    ~Additions();

    /// Adds a copy of an element; of several ones, in their order.
    void add(value_type const & element);

    /// Moves the nodes into the tree. For a name that the tree has, it keeps its node, and the
    /// value is that of the addition if `replace`.
    void commit(bool replace) noexcept;

  private:
    AttributeTree & m_tree;
    TreeLinks * m_first = nullptr; // by child[1], in the order of `add`
    TreeLinks ** m_end = &m_first;
};

// The two branches are better than a choice without one: names that are looked up again and again
// are predicted, and then the load of a child does not wait for the comparison.
inline TreeLinks * AttributeTree::find_node(std::uintptr_t key) const noexcept {
    for (TreeLinks * node = root(); node != nullptr;) {
        std::uintptr_t const other = key_of(node);
        if (other == key) {
            return node;
        }
        if (other < key) {
            node = node->child[1];
        } else {
            node = node->child[0];
        }
    }
    return head();
}

} // namespace vxattribute::impl
