#include "vxattribute/value/block_cache_internal.h"

#if VX_BLOCK_CACHE

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <pthread.h>

namespace vxattribute::impl {

/// The open caches of all threads, so that an unload can empty them. A `thread_local` with a
/// destructor would need no such list, but would keep the library loaded until its thread ends.
struct BlockCache::OpenCaches {
    std::mutex mutex;
    ThreadState * first = nullptr;
    pthread_key_t key = 0; // its destructor runs at the end of a thread
    bool hasKey = false;
    bool isUnloading = false;
    unsigned int exitHandlers = 0;
    /// True once `exit` has begun. Other threads may still run, even code of this library.
    std::atomic<bool> processEnds = false;
};

thread_local constinit BlockCache::ThreadState BlockCache::sm_state{};
constinit BlockCache::OpenCaches BlockCache::sm_caches;

bool BlockCache::make_key() noexcept {
    OpenCaches & caches = sm_caches;
    if (!caches.hasKey && pthread_key_create(&caches.key, &BlockCache::end_thread) == 0) {
        // The lock is held during a fork, so that the child finds the list in order. The child has
        // only the thread that forked: the list shrinks to its cache. The blocks of the other
        // threads are lost there, like everything these threads owned.
        caches.hasKey =
            pthread_atfork([] { sm_caches.mutex.lock(); }, [] { sm_caches.mutex.unlock(); },
                           [] {
                               sm_state.next = sm_state.previous = nullptr;
                               sm_caches.first = sm_state.isOpen ? &sm_state : nullptr;
                               sm_caches.mutex.unlock();
                           }) == 0;
        if (!caches.hasKey) {
            pthread_key_delete(caches.key);
        }
    }
    return caches.hasKey;
}

bool BlockCache::open() noexcept {
    OpenCaches & caches = sm_caches;
    std::lock_guard const lock(caches.mutex);
    if (caches.isUnloading || !make_key()) {
        return false;
    }
    // `exit` calls handlers in the reverse order of registration. One registered before `main`
    // begins is called after `unload`, which is too late, and the first thread may come here that
    // early. So the second thread registers another one. With a single thread the flag does not
    // matter: there are no caches of other threads.
    if (caches.exitHandlers < 2) {
        if (std::atexit([] { sm_caches.processEnds = true; }) != 0) {
            return false;
        }
        ++caches.exitHandlers;
    }
    ThreadState & state = sm_state;
    if (pthread_setspecific(caches.key, &state) != 0) {
        return false;
    }
    state.next = caches.first;
    if (state.next != nullptr) {
        state.next->previous = &state;
    }
    caches.first = &state;
    for (SizeClass & sizeClass : state.classes) {
        sizeClass.room = max_blocks;
    }
    state.isOpen = true;
    return true;
}

void BlockCache::free_slow(void * block, std::size_t size) noexcept {
    ThreadState & state = sm_state;
    if (size <= max_size && !state.isOpen && !state.isClosed) {
        if (open()) {
            free(block, size);
            return;
        }
        // Not tried again: each attempt would take the lock.
        state.isClosed = true;
    }
    ::operator delete(block);
}

void BlockCache::close(ThreadState & state) noexcept {
    if (!state.isOpen) {
        return;
    }
    (state.previous != nullptr ? state.previous->next : sm_caches.first) = state.next;
    if (state.next != nullptr) {
        state.next->previous = state.previous;
    }
    // Objects that die after this point, in later destructors of the thread, go to the heap.
    state.isOpen = false;
    state.isClosed = true;
    for (SizeClass & sizeClass : state.classes) {
        while (Block * const block = sizeClass.first) {
            sizeClass.first = block->next;
            ::operator delete(block);
        }
        sizeClass.room = 0;
    }
}

void BlockCache::end_thread(void * state) noexcept {
    std::lock_guard const lock(sm_caches.mutex);
    close(*static_cast<ThreadState *>(state));
}

void BlockCache::unload() noexcept {
    OpenCaches & caches = sm_caches;
    std::lock_guard const lock(caches.mutex);
    caches.isUnloading = true;
    close(sm_state);
    // Without `exit` this is `dlclose`, during which no other thread may use the library.
    while (!caches.processEnds && caches.first != nullptr) {
        close(*caches.first);
    }
    if (caches.hasKey) {
        pthread_key_delete(caches.key);
    }
}

} // namespace vxattribute::impl

/// `dlclose` calls this before the destructors of the library's statics.
[[gnu::destructor]] static void unload_block_cache() {
    vxattribute::impl::BlockCache::unload();
}

#endif
