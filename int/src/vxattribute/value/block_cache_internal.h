#pragma once

#include <array>
#include <cstddef>
#include <iterator>
#include <new>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VX_HAS_SANITIZER 1
#elif defined(__has_feature)
#define VX_HAS_SANITIZER (__has_feature(address_sanitizer) || __has_feature(thread_sanitizer))
#else
#define VX_HAS_SANITIZER 0
#endif

// 2 is for the test of the cache itself, which runs under sanitizers too.
#if !defined(VX_BLOCK_CACHE) || (VX_HAS_SANITIZER && VX_BLOCK_CACHE != 2)
#undef VX_BLOCK_CACHE
#define VX_BLOCK_CACHE 0
#endif

/// Memory of small objects: values, short lists, holders of maps.
///
/// Most values are one short-lived block of 40 to 80 bytes. Each thread has a pool with a short
/// list of free blocks per size; allocating and freeing take or add one, which costs a few
/// instructions. An empty list is filled from a slab, a piece of the heap that is cut into blocks
/// of that size (block_slab_internal.h). A list that is full returns its blocks to their slabs,
/// whichever thread these belong to. A slab goes back to the heap with the last block returned to
/// it, even if its thread has ended. See docs/decisions/0008-small-blocks-come-from-slabs.md.
///
/// The cache is off under sanitizers, which must see every allocation, and with the CMake option
/// VX_BLOCK_CACHE=OFF. Both functions then use the heap.
namespace vxattribute::impl {

/// The sizes of blocks, in bytes between the starts of neighbours: steps of 16 first, then four to
/// each power of two. A block has the address of its slab before it, as the heap keeps a size.
inline constexpr unsigned short blockStrides[] = {
    32, 48, 64, 80, 96, 112, 128, 144, 160, 192, 224, 256, 320, 384, 448, 512, 640, 768, 896, 1024};

/// A free block.
struct Block {
    Block * next;
};

/// Free blocks of one size that a thread allocates from and frees to, the last freed first.
struct BlockList {
    Block * first = nullptr;
    unsigned int room = 0; // how many more it takes
};

class BlockCache {
  public:
    /// Bytes before each block.
    static constexpr std::size_t head_size = sizeof(void *);
    /// Bytes in the largest block. Memory of more bytes comes from the heap.
    static constexpr std::size_t max_size = blockStrides[std::size(blockStrides) - 1] - head_size;
    /// Between blocks of a slab, distances are multiples of it.
    static constexpr std::size_t alignment = 16;

    /// Returns memory for `size` bytes, aligned like that of `operator new`.
    ///
    /// @raises std::bad_alloc: no memory for a slab; nothing has changed.
    static void * allocate(std::size_t size);

    /// Frees memory that any thread allocated.
    ///
    /// @param size  The size that `allocate` was called with.
    static void free(void * block, std::size_t size) noexcept;

    /// The same, not inline: for sizes that are not constants, whose code is longer.
    static void * allocate_any(std::size_t size);
    static void free_any(void * block, std::size_t size) noexcept;

    /// Returns the free blocks of all threads to their slabs and ends the caching: from then on no
    /// thread calls into the library when it ends. At the end of the process it returns only those
    /// of this thread, because other threads may still be running.
    static void unload() noexcept;

  private:
    struct Threads;

    struct Lists {
        BlockList lists[std::size(blockStrides)];
    };

    class Pool;
    friend class BlockSlab;

    static unsigned int class_of(std::size_t size) noexcept;

    /// The rare halves: the list is empty or full, or the thread has no pool.
    static void * allocate_slow(unsigned int sizeClass);
    static void free_slow(void * memory, unsigned int sizeClass) noexcept;

    static Pool * open_pool() noexcept;
    static Pool * find_pool() noexcept;
    static void end_thread(void * pool) noexcept;

    static Threads sm_threads;
    static Pool sm_unopened;
    static Pool sm_closed;

    /// The pool of the thread, or empty lists. Plain data: an access to it is a load relative to
    /// the thread pointer, with no guard. One pointer, since a library that is loaded at run time
    /// shares a small room for such data with others.
    static thread_local constinit Lists * sm_lists __attribute__((tls_model("initial-exec")));
};

#if VX_BLOCK_CACHE

/// The size class, an index into `blockStrides`, of 16 * i - 7 to 16 * i + 8 bytes (with a head of
/// 8 bytes), for each i.
inline constexpr auto blockClasses = [] {
    std::array<unsigned char, BlockCache::max_size / BlockCache::alignment + 1> classes{};
    unsigned char sizeClass = 0;
    for (std::size_t i = 0; i != classes.size(); ++i) {
        if (blockStrides[sizeClass] < BlockCache::alignment * (i + 1)) {
            ++sizeClass;
        }
        classes[i] = sizeClass;
    }
    return classes;
}();

inline unsigned int BlockCache::class_of(std::size_t size) noexcept {
    return blockClasses[(size + head_size - 1) / alignment];
}

inline void * BlockCache::allocate(std::size_t size) {
    if (size > max_size) [[unlikely]] {
        return ::operator new(size);
    }
    unsigned int const sizeClass = class_of(size);
    BlockList & list = sm_lists->lists[sizeClass];
    Block * const block = list.first;
    if (block == nullptr) [[unlikely]] {
        return allocate_slow(sizeClass);
    }
    list.first = block->next;
    ++list.room;
    return block;
}

inline void BlockCache::free(void * block, std::size_t size) noexcept {
    if (size > max_size) [[unlikely]] {
        ::operator delete(block);
        return;
    }
    unsigned int const sizeClass = class_of(size);
    BlockList & list = sm_lists->lists[sizeClass];
    if (list.room == 0) [[unlikely]] {
        free_slow(block, sizeClass);
        return;
    }
    list.first = ::new (block) Block{list.first};
    --list.room;
}

#else

inline void * BlockCache::allocate(std::size_t size) {
    return ::operator new(size);
}

inline void BlockCache::free(void * block, std::size_t) noexcept {
    ::operator delete(block);
}

#endif

} // namespace vxattribute::impl
