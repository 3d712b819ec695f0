#pragma once

#include <cstddef>
#include <new>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VX_HAS_SANITIZER 1
#elif defined(__has_feature)
#define VX_HAS_SANITIZER (__has_feature(address_sanitizer) || __has_feature(thread_sanitizer))
#else
#define VX_HAS_SANITIZER 0
#endif

#if VX_HAS_SANITIZER || !defined(VX_BLOCK_CACHE)
#undef VX_BLOCK_CACHE
#define VX_BLOCK_CACHE 0
#endif

/// Freed blocks of small objects, kept per thread for the next object of that size.
///
/// Most values are one short-lived block of 40 to 80 bytes. Reusing a block costs a few
/// instructions; an allocation from the heap costs 15 ns. Every block comes from `operator new`, so
/// any thread may free it. A thread keeps at most `max_blocks` per size class. The cache is off
/// under sanitizers, which must see every allocation, and with the CMake option VX_BLOCK_CACHE=OFF.
namespace vxattribute::impl {

class BlockCache {
  public:
    static void * allocate(std::size_t size);
    static void free(void * block, std::size_t size) noexcept;

    /// Frees the cached blocks of all threads and ends the caching: from then on no thread calls
    /// into the library when it ends. At the end of the process only the cache of this thread is
    /// emptied, because other threads may still be running.
    static void unload() noexcept;

  private:
    static constexpr std::size_t granularity = 16;
    static constexpr std::size_t max_size = 128;
    static constexpr unsigned int max_blocks = 256;

    struct Block {
        Block * next;
    };

    struct SizeClass {
        Block * first;
        unsigned int room; // how many more blocks it takes; 0 until the thread frees its first
    };

    /// Plain data: an access to it is a load relative to the thread pointer, with no guard.
    struct ThreadState {
        SizeClass classes[max_size / granularity];
        ThreadState * next; // in the list of open caches
        ThreadState * previous;
        bool isOpen;   // freed blocks are kept
        bool isClosed; // the thread or the library ends: freed blocks are no longer kept
    };

    struct OpenCaches;

    static std::size_t class_of(std::size_t size) noexcept { return (size - 1) / granularity; }

    /// The rare half of `free`: the class is full, or the thread frees its first or last blocks.
    static void free_slow(void * block, std::size_t size) noexcept;

    static bool make_key() noexcept;
    static bool open() noexcept;
    static void close(ThreadState & state) noexcept;
    static void end_thread(void * state) noexcept;

    static thread_local constinit ThreadState sm_state __attribute__((tls_model("initial-exec")));
    static OpenCaches sm_caches;
};

#if VX_BLOCK_CACHE

inline void * BlockCache::allocate(std::size_t size) {
    if (size <= max_size) {
        SizeClass & sizeClass = sm_state.classes[class_of(size)];
        if (Block * const block = sizeClass.first) {
            sizeClass.first = block->next;
            ++sizeClass.room;
            return block;
        }
        size = (class_of(size) + 1) * granularity;
    }
    return ::operator new(size);
}

inline void BlockCache::free(void * block, std::size_t size) noexcept {
    if (size <= max_size) {
        SizeClass & sizeClass = sm_state.classes[class_of(size)];
        if (sizeClass.room != 0) {
            sizeClass.first = ::new (block) Block{sizeClass.first};
            --sizeClass.room;
            return;
        }
    }
    free_slow(block, size);
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
