#include "vxattribute/attribute_tree_impl.h"
#include "vxattribute/map/tree_links_internal.h"

#include <algorithm>

namespace vxattribute::impl {

// Look-ups

TreeLinks * AttributeTree::first_from(std::uintptr_t key) const noexcept {
    TreeLinks * place = head();
    for (TreeLinks * node = root(); node != nullptr;) {
        if (key_of(node) < key) {
            node = node->child[1];
        } else {
            place = node;
            node = node->child[0];
        }
    }
    return place;
}

AttributeTree::Place AttributeTree::place_of(std::uintptr_t key) const noexcept {
    // Names mostly come in map order, as in a stream that this process wrote: try the end first.
    if (m_size != 0 && key_of(m_last) < key) {
        return {m_last, m_last, nullptr, 1};
    }
    Place place = {head(), nullptr, nullptr, 0};
    for (TreeLinks * node = root(); node != nullptr; node = node->child[place.side]) {
        std::uintptr_t const other = key_of(node);
        place.parent = node;
        if (other < key) {
            place.before = node;
            place.side = 1;
        } else if (other > key) {
            place.side = 0;
        } else {
            place.found = node;
            break;
        }
    }
    return place;
}

/// Goes by `next` when that is right, and otherwise searches.
AttributeTree::Place AttributeTree::place_before(TreeLinks * next,
                                                 std::uintptr_t key) const noexcept {
    if (m_size == 0 || (next != head() && key_of(next) <= key)) {
        return place_of(key);
    }
    TreeLinks * const before = next != m_first ? next->previous() : nullptr;
    if (before != nullptr && key_of(before) >= key) {
        return place_of(key);
    }
    // One of two neighbours has no child on the side of the other.
    if (before == nullptr || (next != head() && next->child[0] == nullptr)) {
        return {next, before, nullptr, 0};
    }
    return {before, before, nullptr, 1};
}

// Insertion

inline TreeNode * AttributeTree::make_node(AttributeName const & name, AttributeValue && value) {
    return ::new (m_memory.allocate(m_size)) TreeNode(name, std::move(value));
}

inline AttributeTree::iterator AttributeTree::attach(TreeNode * node,
                                                     Place const & place) noexcept {
    if (place.before == nullptr) {
        m_first = node;
    } else {
        place.before->set_next_adjacent(static_cast<TreeNode *>(place.before) + 1 == node);
    }
    ++m_size;
    if (place.before == m_last) {
        link_last(head(), node, m_last);
        m_last = node;
        return iterator(node);
    }
    if (m_size == 1) {
        m_last = node;
    }
    link_leaf(head(), node, place.parent, place.side);
    return iterator(node);
}

std::pair<AttributeTree::iterator, bool> AttributeTree::try_emplace(AttributeName const & name,
                                                                    AttributeValue && value) {
    Place const place = place_of(key_of(name));
    if (place.found != nullptr) {
        return {iterator(place.found), false};
    }
    return {attach(make_node(name, std::move(value)), place), true};
}

std::pair<AttributeTree::iterator, bool> AttributeTree::insert(value_type const & element) {
    Place const place = place_of(key_of(element.first));
    if (place.found != nullptr) {
        return {iterator(place.found), false};
    }
    return {attach(make_node(element.first, AttributeValue(element.second)), place), true};
}

AttributeTree::iterator AttributeTree::insert(const_iterator hint, value_type const & element) {
    Place const place = place_before(hint.m_links, key_of(element.first));
    if (place.found != nullptr) {
        return iterator(place.found);
    }
    return attach(make_node(element.first, AttributeValue(element.second)), place);
}

void AttributeTree::append(value_type const & element) {
    TreeNode * const node = make_node(element.first, AttributeValue(element.second));
    attach(node,
           m_size == 0 ? Place{head(), nullptr, nullptr, 0} : Place{m_last, m_last, nullptr, 1});
}

void AttributeTree::link_appended() noexcept {
    if (m_size != 0) {
        TreeNode * const first = static_cast<TreeNode *>(m_last) - (m_size - 1);
        m_first = first;
        m_head.child[0] = link_run(first, m_size, head());
        m_last->set_next_adjacent(false);
    }
}

void AttributeTree::assign_copy(AttributeTree const & other) {
    reserve(other.size());
    for (auto const & [name, value] : other) {
        append_unlinked(name, value);
    }
    link_appended();
}

// Removal

AttributeTree::iterator AttributeTree::erase(const_iterator position) noexcept {
    TreeLinks * const node = position.m_links;
    TreeLinks * const next = node->next();
    remove(node, node != m_first ? node->previous() : nullptr);
    return iterator(next);
}

AttributeTree::iterator AttributeTree::erase(const_iterator first, const_iterator last) noexcept {
    while (first != last) {
        first = erase(first);
    }
    return iterator(last.m_links);
}

std::size_t AttributeTree::erase(AttributeName const & name) noexcept {
    Place const place = place_of(key_of(name));
    if (place.found == nullptr) {
        return 0;
    }
    remove(place.found, place.found->child[0] != nullptr ? place.found->previous() : place.before);
    return 1;
}

/// @param before  The node before it; null if it is the first.
void AttributeTree::remove(TreeLinks * node, TreeLinks * before) noexcept {
    if (before != nullptr) {
        before->set_next_adjacent(false);
    } else {
        m_first = node->next();
    }
    if (node == m_last) {
        m_last = before != nullptr ? before : head();
    }
    --m_size;
    unlink(head(), node);
    m_memory.free(static_cast<TreeNode *>(node));
}

void AttributeTree::reset() noexcept {
    m_head = {{nullptr, nullptr}, 0};
    m_first = m_last = &m_head;
    m_size = 0;
}

void AttributeTree::clear() noexcept {
    m_memory.clear();
    reset();
}

// Additions

AttributeTree::Additions::~Additions() {
    while (m_first != nullptr) {
        auto * const node = static_cast<TreeNode *>(m_first);
        m_first = node->child[1];
        m_tree.m_memory.free(node);
    }
}

void AttributeTree::Additions::add(value_type const & element) {
    *m_end = m_tree.make_node(element.first, AttributeValue(element.second));
    m_end = &(*m_end)->child[1];
}

void AttributeTree::Additions::commit(bool replace) noexcept {
    while (m_first != nullptr) {
        auto * const node = static_cast<TreeNode *>(m_first);
        m_first = std::exchange(node->child[1], nullptr);
        Place const place = m_tree.place_of(key_of(node));
        if (place.found == nullptr) {
            m_tree.attach(node, place);
            continue;
        }
        if (replace) {
            static_cast<TreeNode *>(place.found)->element.second.swap(node->element.second);
        }
        m_tree.m_memory.free(node);
    }
}

// Checks

namespace {

struct TreeCheck {
    std::size_t size = 0;
    bool isValid = true;

    /// Returns the height of the tree below `links`, or 0 when there is none.
    int height(TreeLinks const * links, TreeLinks const * parent) noexcept {
        if (links == nullptr) {
            return 0;
        }
        ++size;
        int const lower = height(links->child[0], links);
        int const higher = height(links->child[1], links);
        isValid = isValid && links->parent() == parent &&
                  static_cast<int>(links->balance()) == 1 + higher - lower;
        return 1 + std::max(lower, higher);
    }
};

} // namespace

bool AttributeTree::is_valid() const noexcept {
    TreeCheck check;
    check.height(root(), head());
    if (!check.isValid || check.size != m_size || m_head.child[1] != nullptr || m_head.up != 0) {
        return false;
    }
    TreeLinks const * last = head();
    TreeLinks const * node = m_first;
    for (std::size_t i = 0; i != m_size; ++i) {
        if (last != head() && key_of(last) >= key_of(node)) {
            return false;
        }
        last = node;
        node = node->linked_next();
        if (last->next() != node) {
            return false;
        }
    }
    return node == head() && last == m_last;
}

} // namespace vxattribute::impl
