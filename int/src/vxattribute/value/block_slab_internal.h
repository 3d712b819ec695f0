#pragma once

/// The inside of the block cache: slabs of blocks, and the pools that own them.

#include "vxattribute/value/block_cache_internal.h"

#if VX_BLOCK_CACHE

#include <atomic>
#include <cstdint>
#include <mutex>

namespace vxattribute::impl {

/// Adjacent blocks of one size, in one allocation of the heap.
///
/// The pool of one thread owns a slab, and takes blocks from one slab of each size at a time. Any
/// thread returns blocks. How many were returned, the first of them and the state are one atomic
/// word, so that returning blocks is one exchange of it:
///
/// - In use: the owner takes blocks from it. It stays even when all its blocks are back.
/// - Left: the owner found no more blocks in it. The last of its blocks sends it back to the heap.
/// - Left and listed: at least a quarter of its blocks are back, and the owner can find it.
///
/// A slab enters and leaves the owner's list under a lock, up to twice for all its blocks.
class BlockSlab {
  public:
    using Pool = BlockCache::Pool;

    /// Returns a slab in use, none of whose blocks is cut.
    ///
    /// @param slabs  How many the owner made for this size before: the first ones are small.
    /// @raises std::bad_alloc: no memory.
    static BlockSlab * make(Pool & owner, unsigned int sizeClass, unsigned int slabs);

    /// Returns a block in a slab of its own, which was left: for a thread without a pool.
    ///
    /// @raises std::bad_alloc: no memory.
    static Block * make_single(Pool & owner, unsigned int sizeClass);

    /// Returns blocks, a list that ends with null, to their slabs. Neighbours in the list mostly
    /// are blocks of one slab, which takes them at once.
    static void return_list(Block * first) noexcept;

    // For the owner, of a slab in use:

    /// Returns a list of the blocks that were returned, or null.
    Block * take_returned() noexcept;

    /// Returns a list of new blocks in the order of their addresses, or null.
    ///
    /// @param count  The most that it takes, and then the number that it took.
    Block * cut(unsigned int & count) noexcept;

    bool has_uncut() const noexcept { return cutBlocks != capacity; }

    /// Ends the use. Frees the slab when all blocks are back.
    void leave() noexcept { change(nullptr, nullptr, 0, is_left); }

    /// Takes a listed slab back into use. The owner's lock is held and the slab out of the list.
    void use() noexcept;

    BlockSlab * next = nullptr; // in the owner's list, under its lock
    BlockSlab * previous = nullptr;

    unsigned int size_class() const noexcept { return sizeClass; }

  private:
    using Word = std::uint32_t;

    // Bits 0 to 15: how far from the slab the first returned block is, in units of `alignment`; 0
    // for none. Bits 16 to 29: the number of returned blocks.
    static constexpr Word place_mask = 0xFFFF;
    static constexpr Word one_block = 0x10000;
    static constexpr Word count_mask = 0x3FFF0000;
    static constexpr Word is_left = 0x40000000;
    static constexpr Word is_listed = 0x80000000;

    BlockSlab(Pool & pool, unsigned int size, unsigned int blocks) noexcept
        : owner(pool), sizeClass(size), capacity(blocks) {}

    static BlockSlab *& slab_of(Block * block) noexcept {
        return reinterpret_cast<BlockSlab **>(block)[-1];
    }

    static unsigned int count_of(Word word) noexcept { return (word & count_mask) / one_block; }

    char * base() noexcept { return reinterpret_cast<char *>(this); }

    static BlockSlab * make_of(Pool & owner, unsigned int sizeClass, std::size_t blocks);
    Block * block_at(Word word) noexcept;
    Word place_of(Block * block) noexcept;
    bool is_spent(Word word) const noexcept;
    Word settled(Word word) const noexcept;
    void change(Block * first, Block * last, unsigned int count, Word flags) noexcept;

    Pool & owner;
    unsigned int const sizeClass;
    unsigned int const capacity; // blocks
    unsigned int cutBlocks = 0;  // does not change any more once the slab was left
    std::atomic<Word> returned = 0;
};

/// The lists of one thread, and the slabs that it takes blocks from.
///
/// A pool outlives its thread for as long as it has slabs; the last of them destroys it.
class BlockCache::Pool : public Lists {
  public:
    /// A pool whose lists have no room.
    ///
    /// @param mutex  Protects the listed slabs. Several pools may share one.
    explicit constexpr Pool(std::mutex & mutex) noexcept : lock(mutex) {}

    Pool(Pool const &) = delete;
    Pool & operator=(Pool const &) = delete;

    /// Makes room in all lists.
    void open() noexcept;

    /// Puts blocks into an empty list.
    ///
    /// @raises std::bad_alloc: no memory for a slab; the pool is as it was.
    void fill(unsigned int sizeClass);

    /// Makes room in a full list.
    void drain(unsigned int sizeClass) noexcept;

    /// Returns all blocks, leaves all slabs and gives up the share of the thread.
    void close() noexcept;

    /// Gives up one share, of the thread or of a slab. The last one destroys the pool.
    void release() noexcept;

    // Of slabs, with the lock held:
    void enlist(BlockSlab & slab) noexcept;
    void delist(BlockSlab & slab) noexcept;

    std::mutex & lock;
    std::atomic<unsigned int> shares{1}; // one of the thread, one of each slab
    Pool * next = nullptr;               // in the list of open pools
    Pool * previous = nullptr;

  private:
    static constexpr unsigned int class_count = std::size(blockStrides);

    /// A full list is 2 KiB of blocks.
    static constexpr unsigned int full_length(unsigned int sizeClass) noexcept {
        return 2048u / blockStrides[sizeClass];
    }

    /// What the list of a size is filled from.
    struct Supply {
        Block * full = nullptr;     // a full list: the next that is full replaces and drains it
        Block * returned = nullptr; // blocks, of any number, that slabs got back
        BlockSlab * slab = nullptr; // in use
        unsigned int slabs = 0;     // made so far
    };

    BlockSlab * use_listed(unsigned int sizeClass) noexcept;
    void find_blocks(unsigned int sizeClass);

    Supply m_supplies[class_count];
    BlockSlab * m_listed[class_count] = {}; // under `lock`
};

} // namespace vxattribute::impl

#endif
