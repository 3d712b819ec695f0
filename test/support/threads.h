#pragma once

#include <thread>
#include <vector>

namespace vxtest {

/// Runs `work` in four threads at once, with the numbers 0 to 3.
template <typename Work>
void in_four_threads(Work work) {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back(work, i);
    }
}

} // namespace vxtest
