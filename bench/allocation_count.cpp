// Counts the calls of the global `operator new`. Calls from the libraries count too: they end here.

#include "measure.h"

#include <cstdlib>
#include <new>

namespace {

thread_local unsigned long long allocations = 0;

} // namespace

unsigned long long vxbench::allocation_count() noexcept {
    return allocations;
}

void * operator new(std::size_t size) {
    ++allocations;
    if (void * const block = std::malloc(size == 0 ? 1 : size)) {
        return block;
    }
    throw std::bad_alloc();
}

void operator delete(void * block) noexcept {
    std::free(block);
}

void operator delete(void * block, std::size_t) noexcept {
    std::free(block);
}
