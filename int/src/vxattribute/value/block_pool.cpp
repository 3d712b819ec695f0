#include "vxattribute/value/block_slab_internal.h"

#if VX_BLOCK_CACHE

#include <utility>

namespace vxattribute::impl {

void BlockCache::Pool::open() noexcept {
    for (unsigned int sizeClass = 0; sizeClass != class_count; ++sizeClass) {
        lists[sizeClass].room = full_length(sizeClass);
    }
}

void BlockCache::Pool::fill(unsigned int sizeClass) {
    BlockList & list = lists[sizeClass];
    Supply & supply = m_supplies[sizeClass];
    if (supply.full != nullptr) {
        list = {std::exchange(supply.full, nullptr), 0};
        return;
    }
    find_blocks(sizeClass);
    unsigned int count = full_length(sizeClass);
    if (supply.returned == nullptr) {
        list.first = supply.slab->cut(count);
    } else {
        // Walking the blocks also loads them into the cache, shortly before they are used.
        Block * last = supply.returned;
        unsigned int taken = 1;
        for (; taken != count && last->next != nullptr; ++taken) {
            last = last->next;
        }
        count = taken;
        list.first = std::exchange(supply.returned, std::exchange(last->next, nullptr));
    }
    list.room = full_length(sizeClass) - count;
}

/// Afterwards there are returned blocks, or blocks to be cut from the slab.
void BlockCache::Pool::find_blocks(unsigned int sizeClass) {
    Supply & supply = m_supplies[sizeClass];
    if (supply.returned == nullptr && supply.slab != nullptr) {
        supply.returned = supply.slab->take_returned();
    }
    if (supply.returned != nullptr || (supply.slab != nullptr && supply.slab->has_uncut())) {
        return;
    }
    BlockSlab * slab = use_listed(sizeClass);
    if (slab == nullptr) {
        slab = BlockSlab::make(*this, sizeClass, supply.slabs);
        ++supply.slabs;
    }
    if (supply.slab != nullptr) {
        supply.slab->leave();
    }
    supply.slab = slab;
    supply.returned = slab->take_returned();
}

void BlockCache::Pool::drain(unsigned int sizeClass) noexcept {
    BlockList & list = lists[sizeClass];
    Block * const drained = std::exchange(m_supplies[sizeClass].full, list.first);
    list = {nullptr, full_length(sizeClass)};
    BlockSlab::return_list(drained);
}

void BlockCache::Pool::close() noexcept {
    for (unsigned int sizeClass = 0; sizeClass != class_count; ++sizeClass) {
        BlockList & list = lists[sizeClass];
        Supply & supply = m_supplies[sizeClass];
        for (Block * const blocks : {list.first, supply.full, supply.returned}) {
            BlockSlab::return_list(blocks);
        }
        if (supply.slab != nullptr) {
            supply.slab->leave();
        }
    }
    release();
}

void BlockCache::Pool::release() noexcept {
    if (shares.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        delete this;
    }
}

BlockSlab * BlockCache::Pool::use_listed(unsigned int sizeClass) noexcept {
    std::lock_guard const guard(lock);
    BlockSlab * const slab = m_listed[sizeClass];
    if (slab != nullptr) {
        delist(*slab);
        slab->use();
    }
    return slab;
}

void BlockCache::Pool::enlist(BlockSlab & slab) noexcept {
    BlockSlab *& first = m_listed[slab.size_class()];
    slab.next = first;
    slab.previous = nullptr;
    if (first != nullptr) {
        first->previous = &slab;
    }
    first = &slab;
}

void BlockCache::Pool::delist(BlockSlab & slab) noexcept {
    (slab.previous != nullptr ? slab.previous->next : m_listed[slab.size_class()]) = slab.next;
    if (slab.next != nullptr) {
        slab.next->previous = slab.previous;
    }
}

} // namespace vxattribute::impl

#endif
