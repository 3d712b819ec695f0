#include "memory_watch.h"

#include <algorithm>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VX_FUZZ_HOOKS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define VX_FUZZ_HOOKS 1
#endif
#endif

namespace {

// Plain data, initialized at compile time: the hooks run before other objects are constructed and
// after they are destroyed.
thread_local constinit bool isWatching = false;
thread_local constinit long long present = 0;
thread_local constinit long long most = 0;

void count(long long bytes) noexcept {
    if (isWatching) {
        present += bytes;
        most = std::max(most, present);
    }
}

} // namespace

#ifdef VX_FUZZ_HOOKS

// From sanitizer/allocator_interface.h, which g++ does not come with.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*mallocHook)(void const volatile *,
                                                                            std::size_t),
                                                         void (*freeHook)(void const volatile *));
extern "C" std::size_t __sanitizer_get_allocated_size(void const volatile * block);

namespace {

void on_malloc(void const volatile *, std::size_t size) {
    count(static_cast<long long>(size));
}

void on_free(void const volatile * block) {
    if (isWatching) {
        count(-static_cast<long long>(__sanitizer_get_allocated_size(block)));
    }
}

int const installed = __sanitizer_install_malloc_and_free_hooks(on_malloc, on_free);

} // namespace

#else

#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

void * allocate(std::size_t size) {
    void * const block = std::malloc(size != 0 ? size : 1);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    count(static_cast<long long>(malloc_usable_size(block)));
    return block;
}

void release(void * block) noexcept {
    if (block != nullptr) {
        count(-static_cast<long long>(malloc_usable_size(block)));
        std::free(block);
    }
}

} // namespace

void * operator new(std::size_t size) {
    return allocate(size);
}

void * operator new[](std::size_t size) {
    return allocate(size);
}

void operator delete(void * block) noexcept {
    release(block);
}

void operator delete[](void * block) noexcept {
    release(block);
}

void operator delete(void * block, std::size_t) noexcept {
    release(block);
}

void operator delete[](void * block, std::size_t) noexcept {
    release(block);
}

#endif

namespace vxfuzz {

MemoryWatch::MemoryWatch() noexcept {
    present = most = 0;
    isWatching = true;
}

MemoryWatch::~MemoryWatch() {
    isWatching = false;
}

std::size_t MemoryWatch::peak() const noexcept {
    return static_cast<std::size_t>(most);
}

} // namespace vxfuzz
