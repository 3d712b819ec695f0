#pragma once

#include <cstddef>
#include <new>

/// Counts the allocations of this thread and makes chosen ones fail. Linking it replaces the global
/// `operator new`, which also serves the libraries under test.
namespace vxtest {

/// Allocations of this thread so far.
unsigned long allocation_count() noexcept;

/// Lets the n-th allocation of this thread from now on raise `std::bad_alloc`, or an int, which is
/// no std::exception; 0 lets all pass.
void fail_allocation(unsigned long n, bool raiseInt = false) noexcept;

/// Calls `hook` at the next allocation of this thread, once. It may wait there.
void call_at_allocation(void (*hook)()) noexcept;

/// Blocks of all threads that are allocated and not yet freed.
long live_blocks() noexcept;

/// From now on counts the freed blocks that hold these bytes in one piece, such as a secret; a size
/// of 0 ends it.
void watch_freed_memory(void const * bytes, std::size_t size) noexcept;

/// The number of such blocks that this thread freed.
unsigned long freed_with_bytes() noexcept;

/// Runs `attempt` again and again, each time with a later allocation failing, until it gets
/// through. `check` runs after each failure. Returns the number of failures.
template <typename Attempt, typename Check>
unsigned long fail_each_allocation(Attempt attempt, Check check) {
    for (unsigned long n = 1;; ++n) {
        try {
            fail_allocation(n);
            attempt();
            fail_allocation(0);
            return n - 1;
        } catch (std::bad_alloc const &) {
            fail_allocation(0);
            check();
        }
    }
}

/// The allocations that `action` makes.
template <typename Action>
unsigned long count_allocations(Action action) {
    unsigned long const before = allocation_count();
    action();
    return allocation_count() - before;
}

} // namespace vxtest
