#include "support/allocation.h"

#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <string_view>
#include <utility>

namespace {

thread_local unsigned long count = 0;
thread_local unsigned long countdown = 0;
thread_local bool failsWithInt = false;
thread_local void (*nextHook)() = nullptr;
std::atomic<long> live{0};
thread_local std::string_view watched;
thread_local unsigned long found = 0;

[[maybe_unused]] void * allocate(std::size_t size) {
    ++count;
    if (auto * const hook = std::exchange(nextHook, nullptr)) {
        hook();
    }
    if (countdown != 0 && --countdown == 0) {
        if (failsWithInt) {
            throw 0;
        }
        throw std::bad_alloc();
    }
    void * const block = std::malloc(size != 0 ? size : 1);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    live.fetch_add(1, std::memory_order_relaxed);
    return block;
}

[[maybe_unused]] void release(void * block) noexcept {
    if (block != nullptr) {
        live.fetch_sub(1, std::memory_order_relaxed);
        if (!watched.empty()) {
            std::string_view const memory(static_cast<char *>(block), malloc_usable_size(block));
            found += memory.find(watched) != std::string_view::npos ? 1 : 0;
        }
        std::free(block);
    }
}

} // namespace

namespace vxtest {

unsigned long allocation_count() noexcept {
    return count;
}

void fail_allocation(unsigned long n, bool raiseInt) noexcept {
    countdown = n;
    failsWithInt = raiseInt;
}

void call_at_allocation(void (*hook)()) noexcept {
    nextHook = hook;
}

void watch_freed_memory(void const * bytes, std::size_t size) noexcept {
    watched = {static_cast<char const *>(bytes), size};
    found = 0;
}

unsigned long freed_with_bytes() noexcept {
    return found;
}

long live_blocks() noexcept {
    return live.load(std::memory_order_relaxed);
}

} // namespace vxtest

// ThreadSanitizer of clang has its own operators. Nothing is counted there.
#if !defined(__has_feature)
#define __has_feature(x) 0
#endif
#if !__has_feature(thread_sanitizer)

void * operator new(std::size_t size) {
    return allocate(size);
}

void * operator new[](std::size_t size) {
    return allocate(size);
}

void * operator new(std::size_t size, std::nothrow_t const &) noexcept {
    try {
        return allocate(size);
    } catch (...) {
        return nullptr;
    }
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
