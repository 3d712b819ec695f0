#include "vxattribute/block_cache_internal.h"

namespace vxattribute::impl {

#if VX_BLOCK_CACHE

thread_local constinit BlockCache::ThreadState BlockCache::sm_state{};
constinit std::atomic<bool> BlockCache::sm_isStopped = false;

/// Empties the cache of its thread when the thread ends.
struct BlockCacheCloser {
    ~BlockCacheCloser() { BlockCache::close(); }

    void touch() noexcept {}
};

void BlockCache::free_slow(void * block, std::size_t size) noexcept {
    if (sm_state.isOpen || sm_state.isClosed || size > max_size ||
        sm_isStopped.load(std::memory_order_relaxed)) {
        ::operator delete(block);
        return;
    }
    // The first use of the object has its destructor run at the end of the thread.
    static thread_local BlockCacheCloser closer;
    closer.touch();
    sm_state.isOpen = true;
    for (SizeClass & sizeClass : sm_state.classes) {
        sizeClass.room = max_blocks;
    }
    free(block, size);
}

void BlockCache::close() noexcept {
    // Objects that die after this point, in later destructors of the thread, go to the heap.
    sm_state.isOpen = false;
    sm_state.isClosed = true;
    for (SizeClass & sizeClass : sm_state.classes) {
        while (Block * const block = sizeClass.first) {
            sizeClass.first = block->next;
            ::operator delete(block);
        }
        sizeClass.room = 0;
    }
}

void BlockCache::stop() noexcept {
    sm_isStopped.store(true, std::memory_order_relaxed);
}

#endif

} // namespace vxattribute::impl
