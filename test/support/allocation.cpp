#include "support/allocation.h"

#include <atomic>
#include <cstdlib>

namespace {

thread_local unsigned long count = 0;
thread_local unsigned long countdown = 0;
std::atomic<long> live{0};

[[maybe_unused]] void * allocate(std::size_t size) {
    ++count;
    if (countdown != 0 && --countdown == 0) {
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
        std::free(block);
    }
}

} // namespace

namespace vxtest {

unsigned long allocation_count() noexcept {
    return count;
}

void fail_allocation(unsigned long n) noexcept {
    countdown = n;
}

long live_blocks() noexcept {
    return live.load(std::memory_order_relaxed);
}

} // namespace vxtest

// ThreadSanitizer of clang brings its own; nothing is counted there.
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
