#pragma once

#include <cstddef>
#include <new>

/// Counts the allocations of this thread and makes chosen ones fail. Linking allocation.cpp
/// replaces the global `operator new`, which also serves the libraries under test.
namespace vxtest {

/// Returns the number of allocations of this thread so far.
unsigned long allocation_count() noexcept;

/// Makes the n-th allocation of this thread from now on raise `std::bad_alloc`, or an int, which is
/// not a std::exception. 0 lets all succeed.
void fail_allocation(unsigned long n, bool raiseInt = false) noexcept;

/// Calls `hook` at the next allocation of this thread, once. It may wait there.
void call_at_allocation(void (*hook)()) noexcept;

/// Returns the number of blocks of all threads that are allocated and not yet freed.
long live_blocks() noexcept;

/// Starts counting the freed blocks that contain these bytes, such as a secret, in one piece. A
/// size of 0 stops it.
void watch_freed_memory(void const * bytes, std::size_t size) noexcept;

/// Returns the number of such blocks that this thread freed.
unsigned long freed_with_bytes() noexcept;

/// Runs `attempt` again and again, each time with a later allocation failing, until it succeeds.
/// Calls `check` after each failure. Returns the number of failures.
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

/// Returns the number of allocations that `action` makes.
template <typename Action>
unsigned long count_allocations(Action action) {
    unsigned long const before = allocation_count();
    action();
    return allocation_count() - before;
}

} // namespace vxtest
