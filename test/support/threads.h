#pragma once

#include <thread>

namespace vxtest {

/// Runs `work` in four threads at once, with the numbers 0 to 3.
template <typename Work>
void in_four_threads(Work work) {
    std::thread threads[4];
    for (int i = 0; i < 4; ++i) {
        threads[i] = std::thread(work, i);
    }
    for (std::thread & thread : threads) {
        thread.join();
    }
}

} // namespace vxtest
