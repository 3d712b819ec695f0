#pragma once

#include "vxattribute/tree_node_impl.h"

/// The linking and balancing of a map's tree. Nothing here compares names, allocates or raises, and
/// only `link_run` sets the mark for adjacent nodes.
namespace vxattribute::impl {

/// Makes `node` a leaf, the child of `parent` on `side`, and balances the tree. O(log n), O(1) on
/// average for leaves that are inserted in order.
///
/// @pre  `node` has no children and an even balance. `parent` has no child on that side.
void link_leaf(TreeLinks * head, TreeLinks * node, TreeLinks * parent, unsigned int side) noexcept;

/// The same, faster, for a node after the last one.
void link_last(TreeLinks * head, TreeLinks * node, TreeLinks * last) noexcept;

/// Takes `node` out of the tree and balances it: O(log n), O(1) on average.
void unlink(TreeLinks * head, TreeLinks * node) noexcept;

/// Links `count` nodes, at least one, that are side by side in the order of their names: O(count).
///
/// @return The upper node, whose parent is `parent`.
TreeNode * link_run(TreeNode * first, std::size_t count, TreeLinks * parent) noexcept;

} // namespace vxattribute::impl
