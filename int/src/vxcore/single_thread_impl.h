#pragma once

// Included by the headers of counted objects; not for direct use.

#include <atomic>

#if __has_include(<sys/single_threaded.h>)
#include <sys/single_threaded.h>
#endif

namespace vxcore::impl {

/// True while the calling thread is the only one of the process. Counts and locks then need no
/// atomic instructions, each of which costs about 20 cycles. Always false where the C library does
/// not say so.
///
/// Why a plain access may follow. The C library clears its flag in `pthread_create`, before the new
/// thread runs, so the creation orders all plain accesses before those of the new thread. It sets
/// the flag again at most after all other threads have ended and this thread has synchronized with
/// their ends, so their accesses come before ours. No other thread can exist between the test and
/// the access, since only this thread could create it. `std::shared_ptr` relies on the same.
///
/// Not under the thread sanitizer, whose reports need the atomic operations.
inline bool is_single_threaded() noexcept {
#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define VX_COUNTS_ARE_ALWAYS_ATOMIC 1
#endif
#endif
#if __has_include(<sys/single_threaded.h>) && !defined(__SANITIZE_THREAD__) && \
    !defined(VX_COUNTS_ARE_ALWAYS_ATOMIC)
    return __libc_single_threaded != 0;
#else
    return false;
#endif
}

/// Adds to a count that threads may share. Relaxed: the caller holds a reference already.
inline void add_to_count(std::atomic<unsigned int> & count, unsigned int n) noexcept {
    if (is_single_threaded()) {
        count.store(count.load(std::memory_order_relaxed) + n, std::memory_order_relaxed);
    } else {
        count.fetch_add(n, std::memory_order_relaxed);
    }
}

} // namespace vxcore::impl
