#pragma once

#include "vxcore/single_thread_impl.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace vxcore::impl {

/// A spin lock for critical sections of a few instructions. Locking is one atomic exchange, a plain
/// one while the process has one thread; unlocking is a plain store.
///
/// A waiting thread sleeps after 1,000 tries; otherwise a thread of higher priority could keep the
/// owner off the processor for ever. It polls, because waking it would cost every owner a second
/// exchange. A mutex would double the cost of the critical section.
class SpinLock {
  public:
    void lock() noexcept {
        while (!try_lock()) {
            wait();
        }
    }

    bool try_lock() noexcept {
        if (is_single_threaded()) {
            bool const isFree = !m_isTaken.load(std::memory_order_relaxed);
            m_isTaken.store(true, std::memory_order_relaxed);
            return isFree;
        }
        return !m_isTaken.exchange(true, std::memory_order_acquire);
    }

    void unlock() noexcept { m_isTaken.store(false, std::memory_order_release); }

  private:
    [[gnu::cold]] void wait() const noexcept {
        int tries = 0;
        while (m_isTaken.load(std::memory_order_relaxed)) {
            if (tries < 1000) {
                ++tries;
            } else { // the owner is not running
                std::this_thread::sleep_for(std::chrono::microseconds(50));
            }
        }
    }

    std::atomic<bool> m_isTaken = false;
};

} // namespace vxcore::impl
