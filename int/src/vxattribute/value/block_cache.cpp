#include "vxattribute/value/block_slab_internal.h"

namespace vxattribute::impl {

void * BlockCache::allocate_any(std::size_t size) {
    return allocate(size);
}

void BlockCache::free_any(void * block, std::size_t size) noexcept {
    free(block, size);
}

} // namespace vxattribute::impl

#if VX_BLOCK_CACHE

#include <cstdlib>
#include <pthread.h>
#include <utility>

namespace vxattribute::impl {

/// The open pools of all threads, so that an unload can close them. A `thread_local` with a
/// destructor would need no such list, but would keep the library loaded until its thread ends.
struct BlockCache::Threads {
    std::mutex mutex; // taken before a lock of slabs
    Pool * first = nullptr;
    pthread_key_t key = 0; // its destructor runs at the end of a thread
    bool hasKey = false;
    bool isUnloading = false;
    unsigned int exitHandlers = 0;
    /// True once `exit` has begun. Other threads may still run, even code of this library.
    std::atomic<bool> processEnds = false;

    /// Pools share these locks: pools come and go, and a fork must hold all locks.
    struct alignas(64) SlabLock {
        std::mutex mutex;
    } slabLocks[16];

    std::atomic<unsigned int> pools = 0; // made so far

    std::mutex & next_lock() noexcept { return slabLocks[pools++ % std::size(slabLocks)].mutex; }

    bool make_key() noexcept;
    bool add(Pool & pool) noexcept;
    void close(Pool & pool) noexcept;
    void lock_all() noexcept;
    void unlock_all() noexcept;
};

constinit BlockCache::Threads BlockCache::sm_threads;

// Always without blocks and without room. A thread has the first before it uses a block, and the
// second after it has ended, or the library is unloaded.
constinit BlockCache::Pool BlockCache::sm_unopened{sm_threads.slabLocks[0].mutex};
constinit BlockCache::Pool BlockCache::sm_closed{sm_threads.slabLocks[0].mutex};

thread_local constinit BlockCache::Lists * BlockCache::sm_lists = &BlockCache::sm_unopened;

void BlockCache::Threads::lock_all() noexcept {
    mutex.lock();
    for (SlabLock & slabs : slabLocks) {
        slabs.mutex.lock();
    }
}

void BlockCache::Threads::unlock_all() noexcept {
    for (SlabLock & slabs : slabLocks) {
        slabs.mutex.unlock();
    }
    mutex.unlock();
}

bool BlockCache::Threads::make_key() noexcept {
    if (!hasKey && pthread_key_create(&key, &BlockCache::end_thread) == 0) {
        // All locks are held during a fork, so that the child finds the lists in order. The child
        // has only the thread that forked: the list shrinks to its pool. The free blocks of the
        // other threads are lost there, like everything these threads owned.
        hasKey = pthread_atfork([] { sm_threads.lock_all(); }, [] { sm_threads.unlock_all(); },
                                [] {
                                    Pool * const pool = open_pool();
                                    sm_threads.first = pool;
                                    if (pool != nullptr) {
                                        pool->next = pool->previous = nullptr;
                                    }
                                    sm_threads.unlock_all();
                                }) == 0;
        if (!hasKey) {
            pthread_key_delete(key);
        }
    }
    return hasKey;
}

/// Adds the pool of this thread, unless the library is being unloaded.
bool BlockCache::Threads::add(Pool & pool) noexcept {
    std::lock_guard const guard(mutex);
    if (isUnloading || !make_key()) {
        return false;
    }
    // `exit` calls handlers in the reverse order of registration. One registered before `main`
    // begins is called after `unload`, which is too late, and the first thread may come here that
    // early. So the second thread registers another one. With a single thread the flag does not
    // matter: there are no pools of other threads.
    if (exitHandlers < 2) {
        if (std::atexit([] { sm_threads.processEnds = true; }) != 0) {
            return false;
        }
        ++exitHandlers;
    }
    if (pthread_setspecific(key, &pool) != 0) {
        return false;
    }
    pool.open();
    pool.next = first;
    if (first != nullptr) {
        first->previous = &pool;
    }
    first = &pool;
    return true;
}

/// Removes a pool. The lock is held, so that an unload waits for the end of a thread.
void BlockCache::Threads::close(Pool & pool) noexcept {
    (pool.previous != nullptr ? pool.previous->next : first) = pool.next;
    if (pool.next != nullptr) {
        pool.next->previous = pool.previous;
    }
    pool.close();
}

/// Returns the pool of this thread, or null when it has none.
BlockCache::Pool * BlockCache::open_pool() noexcept {
    auto * const pool = static_cast<Pool *>(sm_lists);
    return pool == &sm_unopened || pool == &sm_closed ? nullptr : pool;
}

/// Returns the pool of this thread, which it makes at the first use, or null.
BlockCache::Pool * BlockCache::find_pool() noexcept {
    if (sm_lists == &sm_unopened) {
        if (auto * const pool = new (std::nothrow) Pool(sm_threads.next_lock())) {
            if (sm_threads.add(*pool)) {
                sm_lists = pool;
            } else {
                delete pool;
                sm_lists = &sm_closed; // not tried again: each attempt would take the lock
            }
        }
    }
    return open_pool();
}

void * BlockCache::allocate_slow(unsigned int sizeClass) {
    Pool * const pool = find_pool();
    if (pool == nullptr) {
        return BlockSlab::make_single(sm_closed, sizeClass);
    }
    pool->fill(sizeClass);
    BlockList & list = pool->lists[sizeClass];
    ++list.room;
    return std::exchange(list.first, list.first->next);
}

void BlockCache::free_slow(void * memory, unsigned int sizeClass) noexcept {
    auto * const block = ::new (memory) Block{nullptr};
    Pool * const pool = find_pool();
    if (pool == nullptr) {
        BlockSlab::return_list(block);
        return;
    }
    BlockList & list = pool->lists[sizeClass];
    if (list.room == 0) { // it has some when the pool is new
        pool->drain(sizeClass);
    }
    block->next = std::exchange(list.first, block);
    --list.room;
}

void BlockCache::end_thread(void * pool) noexcept {
    std::lock_guard const guard(sm_threads.mutex);
    // Objects that are destroyed after this point, in later destructors of the thread, return
    // their blocks to the slabs.
    sm_lists = &sm_closed;
    sm_threads.close(*static_cast<Pool *>(pool));
}

void BlockCache::unload() noexcept {
    std::lock_guard const guard(sm_threads.mutex);
    sm_threads.isUnloading = true;
    Pool * const own = open_pool();
    sm_lists = &sm_closed;
    if (own != nullptr) {
        sm_threads.close(*own);
    }
    // Without `exit` this is `dlclose`, during which no other thread may use the library.
    while (!sm_threads.processEnds && sm_threads.first != nullptr) {
        sm_threads.close(*sm_threads.first);
    }
    if (sm_threads.hasKey) {
        pthread_key_delete(sm_threads.key);
    }
}

} // namespace vxattribute::impl

/// `dlclose` calls this before the destructors of the library's statics.
[[gnu::destructor]] static void unload_block_cache() {
    vxattribute::impl::BlockCache::unload();
}

#endif
