#include "vxattribute/map/tree_links_internal.h"

#include <bit>

namespace vxattribute::impl {

namespace {

/// The next node on that side in the order of names, or the head.
template <unsigned int side>
TreeLinks * neighbour(TreeLinks const * node) noexcept {
    if (TreeLinks * found = node->child[side]) {
        while (TreeLinks * const below = found->child[1 - side]) {
            found = below;
        }
        return found;
    }
    TreeLinks * above = node->parent();
    while (above->child[side] == node) {
        node = above;
        above = above->parent();
    }
    return above;
}

void set_child(TreeLinks * parent, unsigned int side, TreeLinks * child) noexcept {
    parent->child[side] = child;
    if (child != nullptr) {
        child->set_parent(parent);
    }
}

/// Puts the child of `top` on `side` into its place, and `top` below it, with these balances. Keeps
/// the order.
inline void rotate(TreeLinks * top, unsigned int side, unsigned int topBalance,
                   unsigned int childBalance) noexcept {
    TreeLinks * const above = top->parent();
    TreeLinks * const child = top->child[side];
    above->child[top->side()] = child;
    child->set(above, childBalance);
    set_child(top, side, child->child[1 - side]);
    child->child[1 - side] = top;
    top->set(child, topBalance);
}

/// Balances the tree below `top`, which is two levels higher on `side` and balanced below. Returns
/// its new top: that is even unless the tree is as high as before, which only happens after a
/// removal.
[[gnu::always_inline]] inline TreeLinks * rebalance(TreeLinks * top, unsigned int side) noexcept {
    unsigned int const heavy = 2 * side;
    unsigned int const light = 2 - heavy;
    TreeLinks * const child = top->child[side];
    if (child->balance() == light) {
        // The middle node has what is too high. Its two sides go to `child` and `top`.
        TreeLinks * const middle = child->child[1 - side];
        unsigned int const was = middle->balance();
        rotate(child, 1 - side, was == light ? heavy : TreeLinks::even, TreeLinks::even);
        rotate(top, side, was == heavy ? light : TreeLinks::even, TreeLinks::even);
        return middle;
    }
    bool const wasEven = child->balance() == TreeLinks::even;
    rotate(top, side, wasEven ? heavy : TreeLinks::even, wasEven ? light : TreeLinks::even);
    return child;
}

} // namespace

TreeLinks * TreeLinks::linked_next() const noexcept {
    return neighbour<1>(this);
}

TreeLinks * TreeLinks::previous() const noexcept {
    return neighbour<0>(this);
}

namespace {

/// `link_leaf`. The sides are known beforehand when each is the higher one.
template <bool isLast>
[[gnu::always_inline]] inline void link(TreeLinks * head, TreeLinks * node, TreeLinks * parent,
                                        unsigned int side) noexcept {
    node->set_parent(parent);
    parent->child[side] = node;
    // The tree below `node` is one level higher than before.
    while (parent != head) {
        unsigned int const heavy = 2 * side;
        unsigned int const balance = parent->balance();
        if (balance != TreeLinks::even) {
            if (balance == heavy) {
                rebalance(parent, side);
            } else {
                parent->set_balance(TreeLinks::even);
            }
            return;
        }
        parent->set_balance(heavy);
        node = parent;
        parent = node->parent();
        side = isLast ? 1 : node->side();
    }
}

} // namespace

void link_leaf(TreeLinks * head, TreeLinks * node, TreeLinks * parent, unsigned int side) noexcept {
    link<false>(head, node, parent, side);
}

void link_last(TreeLinks * head, TreeLinks * node, TreeLinks * last) noexcept {
    link<true>(head, node, last, 1);
}

void unlink(TreeLinks * head, TreeLinks * node) noexcept {
    TreeLinks * parent = node->parent();
    unsigned int side = node->side();
    if (node->child[0] == nullptr || node->child[1] == nullptr) {
        set_child(parent, side, node->child[node->child[0] == nullptr ? 1 : 0]);
    } else {
        // The next node, which has no lower child, leaves its place and takes that of `node`.
        TreeLinks * heir = node->child[1];
        while (heir->child[0] != nullptr) {
            heir = heir->child[0];
        }
        TreeLinks * const above = heir->parent();
        unsigned int const heirSide = heir->side();
        set_child(above, heirSide, heir->child[1]);
        set_child(parent, side, heir);
        set_child(heir, 0, node->child[0]);
        set_child(heir, 1, node->child[1]);
        heir->set_balance(node->balance());
        parent = above == node ? heir : above;
        side = heirSide;
    }
    // The tree of `parent` on `side` is one level lower than before.
    while (parent != head) {
        unsigned int const heavy = 2 * side;
        unsigned int const balance = parent->balance();
        TreeLinks * top = parent;
        if (balance == TreeLinks::even) {
            parent->set_balance(2 - heavy);
            return;
        }
        if (balance == heavy) {
            parent->set_balance(TreeLinks::even);
        } else {
            top = rebalance(parent, 1 - side);
            if (top->balance() != TreeLinks::even) {
                return;
            }
        }
        parent = top->parent();
        side = top->side();
    }
}

namespace {

void set_links(TreeNode * node, TreeLinks * parent, unsigned int balance, TreeNode * lower,
               TreeNode * higher) noexcept {
    node->child[0] = lower;
    node->child[1] = higher;
    node->up = reinterpret_cast<std::uintptr_t>(parent) | balance | TreeLinks::adjacent_bit;
}

} // namespace

// The recursion is as deep as the tree is high, 32 levels for 4 billion nodes. It ends at one or
// two nodes rather than at none, which spares most of the calls.
TreeNode * link_run(TreeNode * first, std::size_t count, TreeLinks * parent) noexcept {
    if (count == 1) {
        set_links(first, parent, TreeLinks::even, nullptr, nullptr);
        return first;
    }
    TreeNode * const middle = first + count / 2;
    if (count == 2) {
        set_links(first, middle, TreeLinks::even, nullptr, nullptr);
        set_links(middle, parent, 0, first, nullptr);
        return middle;
    }
    std::size_t const lower = count / 2;
    std::size_t const higher = count - 1 - lower;
    // A tree of n nodes that is made so is bit_width(n) levels high.
    auto const balance =
        static_cast<unsigned int>(TreeLinks::even + std::bit_width(higher) - std::bit_width(lower));
    set_links(middle, parent, balance, link_run(first, lower, middle),
              link_run(middle + 1, higher, middle));
    return middle;
}

} // namespace vxattribute::impl
