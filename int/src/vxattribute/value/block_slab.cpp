#include "vxattribute/value/block_slab_internal.h"

#if VX_BLOCK_CACHE

#include <algorithm>
#include <utility>

namespace vxattribute::impl {

namespace {

constexpr std::size_t round_up(std::size_t size) noexcept {
    return (size + BlockCache::alignment - 1) / BlockCache::alignment * BlockCache::alignment;
}

/// Where the first block is. The slab's own memory ends before the address that precedes it.
constexpr std::size_t first_place = round_up(sizeof(BlockSlab) + BlockCache::head_size);

// With its heap block's own head, a slab takes 2 KiB at first, so that a thread with few values
// takes little memory, and up to 16 KiB.
constexpr std::size_t first_slab = 2048;
constexpr unsigned int max_doublings = 3;
constexpr std::size_t heap_head = 16;
static_assert((first_slab << max_doublings) / BlockCache::alignment <= 0x3FFF, "fits the word");

} // namespace

BlockSlab * BlockSlab::make(Pool & owner, unsigned int sizeClass, unsigned int slabs) {
    std::size_t const size = first_slab << std::min(slabs, max_doublings);
    return make_of(owner, sizeClass, (size - heap_head - first_place) / blockStrides[sizeClass]);
}

Block * BlockSlab::make_single(Pool & owner, unsigned int sizeClass) {
    BlockSlab * const slab = make_of(owner, sizeClass, 1);
    unsigned int count = 1;
    Block * const block = slab->cut(count);
    slab->leave();
    return block;
}

BlockSlab * BlockSlab::make_of(Pool & owner, unsigned int sizeClass, std::size_t blocks) {
    std::size_t const size = first_place - BlockCache::head_size + blocks * blockStrides[sizeClass];
    void * const memory = ::operator new(size);
    owner.shares.fetch_add(1, std::memory_order_relaxed);
    return ::new (memory) BlockSlab(owner, sizeClass, static_cast<unsigned int>(blocks));
}

Block * BlockSlab::block_at(Word word) noexcept {
    std::size_t const place = word & place_mask;
    return place == 0 ? nullptr : reinterpret_cast<Block *>(base() + place * BlockCache::alignment);
}

BlockSlab::Word BlockSlab::place_of(Block * block) noexcept {
    auto const distance = static_cast<std::size_t>(reinterpret_cast<char *>(block) - base());
    return static_cast<Word>(distance / BlockCache::alignment);
}

bool BlockSlab::is_spent(Word word) const noexcept {
    return (word & is_left) != 0 && count_of(word) == cutBlocks;
}

void BlockSlab::use() noexcept {
    returned.fetch_and(~(is_left | is_listed), std::memory_order_acquire);
}

Block * BlockSlab::cut(unsigned int & count) noexcept {
    unsigned int const begin = cutBlocks;
    count = std::min(count, capacity - begin);
    cutBlocks = begin + count;
    std::size_t const stride = blockStrides[sizeClass];
    char * place = base() + first_place + cutBlocks * stride;
    Block * first = nullptr;
    for (unsigned int i = 0; i != count; ++i) {
        place -= stride;
        first = ::new (static_cast<void *>(place)) Block{first};
        slab_of(first) = this;
    }
    return first;
}

Block * BlockSlab::take_returned() noexcept {
    return returned.load(std::memory_order_relaxed) == 0
               ? nullptr
               : block_at(returned.exchange(0, std::memory_order_acquire));
}

void BlockSlab::return_list(Block * block) noexcept {
    while (block != nullptr) {
        BlockSlab * const slab = slab_of(block);
        Block * const first = block;
        Block * last = nullptr;
        unsigned int count = 0;
        do {
            last = std::exchange(block, block->next);
            ++count;
        } while (block != nullptr && slab_of(block) == slab);
        slab->change(first, last, count, 0);
    }
}

/// Adds a list of `count` blocks to those that were returned, and sets `flags`. Once the word is
/// exchanged, another thread may free a slab that was left, unless it is spent, which makes this
/// thread the last, or the lock is held.
void BlockSlab::change(Block * first, Block * last, unsigned int count, Word flags) noexcept {
    std::unique_lock lock(owner.lock, std::defer_lock);
    Word word = returned.load(std::memory_order_acquire);
    Word changed = 0;
    bool isSpent = false;
    for (;;) {
        changed = (word + count * one_block) | flags;
        if (count != 0) {
            last->next = block_at(word);
            changed = (changed & ~place_mask) | place_of(first);
        }
        changed = settled(changed);
        isSpent = is_spent(changed);
        if (((word ^ changed) & is_listed) != 0 && !lock.owns_lock()) {
            lock.lock();
            word = returned.load(std::memory_order_acquire);
        } else if (returned.compare_exchange_weak(word, changed, std::memory_order_acq_rel,
                                                  std::memory_order_acquire)) {
            break;
        }
    }
    if (((word ^ changed) & is_listed) != 0) {
        (changed & is_listed) != 0 ? owner.enlist(*this) : owner.delist(*this);
    }
    if (isSpent) {
        lock = {}; // the heap need not wait for it, nor it for the heap
        Pool & pool = owner;
        ::operator delete(this);
        pool.release();
    }
}

/// A slab that was left is listed from a quarter of its blocks on, but not when all are back.
BlockSlab::Word BlockSlab::settled(Word word) const noexcept {
    if ((word & is_left) == 0) {
        return word;
    }
    if (is_spent(word)) {
        return word & ~is_listed;
    }
    return count_of(word) * 4 >= cutBlocks ? word | is_listed : word;
}

} // namespace vxattribute::impl

#endif
