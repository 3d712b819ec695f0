#pragma once

#include <benchmark/benchmark.h>

namespace vxbench {

/// Returns by how many bytes the resident memory of a process grows at most while it runs
/// `operation`, or 0 where that cannot be measured. It is measured in a child process after all
/// that is free was given back to the system, so what ran before does not count.
double peak_memory_of(void (*operation)(void const *), void const * argument);

/// Reports the growth as the counter `bytes`, beside `units` as `measure` does. Measures once,
/// since there is nothing to repeat.
template <typename Operation>
void measure_peak_memory(benchmark::State & state, double units, Operation operation) {
    state.counters["units"] = units;
    state.counters["bytes"] = peak_memory_of(
        [](void const * argument) { (*static_cast<Operation const *>(argument))(); }, &operation);
    for (auto _ : state) {
    }
}

} // namespace vxbench
