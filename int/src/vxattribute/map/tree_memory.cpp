#include "vxattribute/tree_node_impl.h"
#include "vxattribute/value/block_cache_internal.h"

#include <algorithm>

namespace vxattribute::impl {

TreeMemory::TreeMemory(void * room, std::size_t count) noexcept {
    use_run(::new (room) Run{nullptr, static_cast<unsigned int>(count), true});
}

/// As many nodes as the tree has, so that a large tree needs few runs and a small one wastes
/// little.
std::size_t TreeMemory::next_run(std::size_t size) noexcept {
    return std::clamp<std::size_t>(size, 4, 256);
}

void TreeMemory::use_run(Run * run) noexcept {
    m_runs = run;
    m_next = run->nodes();
    m_end = m_next + run->count;
}

void TreeMemory::add_run(std::size_t count) {
    void * const block = BlockCache::allocate(run_bytes(count));
    use_run(::new (block) Run{m_runs, static_cast<unsigned int>(count), false});
}

void TreeMemory::reserve(std::size_t count) {
    if (static_cast<std::size_t>(m_end - m_next) >= count) {
        return;
    }
    TreeNode * rest = m_next;
    TreeNode * const end = m_end;
    add_run(count);
    for (; rest != end; ++rest) {
        m_free = ::new (static_cast<void *>(rest)) TreeLinks{{m_free, nullptr}, 0};
    }
}

void TreeMemory::clear() noexcept {
    TreeNode * end = m_next; // of the nodes that were ever in use: all but for the newest run
    for (Run * run = m_runs; run != nullptr;) {
        for (TreeNode * node = run->nodes(); node != end; ++node) {
            if (node->up != 0) {
                node->~TreeNode();
            }
        }
        Run * const older = run->next;
        if (run->isBesideTree) {
            use_run(run); // the oldest one
            m_free = nullptr;
            return;
        }
        BlockCache::free(run, run_bytes(run->count));
        if (older != nullptr) {
            end = older->nodes() + older->count;
        }
        run = older;
    }
    m_runs = nullptr;
    m_next = m_end = nullptr;
    m_free = nullptr;
}

} // namespace vxattribute::impl
