#pragma once

#include <pthread.h>
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

/// Runs `work` in a thread whose stack has 256 KiB. Only release builds promise to need no more.
template <typename Work>
void on_small_stack(Work work) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
#if defined(NDEBUG) && !defined(__SANITIZE_ADDRESS__) && !defined(__clang__)
    pthread_attr_setstacksize(&attributes, 256 * 1024);
#endif
    auto const run = [](void * argument) -> void * {
        (*static_cast<Work *>(argument))();
        return nullptr;
    };
    pthread_t thread;
    pthread_create(&thread, &attributes, run, &work);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

} // namespace vxtest
