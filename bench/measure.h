#pragma once

#include <benchmark/benchmark.h>

#include <string>

namespace vxbench {

/// Calls of `operator new` in this thread so far; what peers take from malloc does not show.
unsigned long long allocation_count() noexcept;

/// Measures `operation` and notes beside the time:
///
/// - `units`: how many things one call does, such as attributes written. The table divides by it.
/// - `allocations`: calls of `operator new` in one call, counted once everything is warm.
template <typename Operation>
void measure(benchmark::State & state, double units, Operation operation) {
    operation();
    unsigned long long const before = allocation_count();
    operation();
    auto const allocations = static_cast<double>(allocation_count() - before);
    state.counters["units"] = benchmark::Counter(units, benchmark::Counter::kAvgThreads);
    state.counters["allocations"] =
        benchmark::Counter(allocations, benchmark::Counter::kAvgThreads);
    for (auto _ : state) {
        operation();
    }
}

/// A benchmark "work/peer". All peers of a work do the same.
template <typename Body>
benchmark::internal::Benchmark * add(std::string const & work, std::string const & peer,
                                     Body body) {
    return benchmark::RegisterBenchmark((work + "/" + peer).c_str(), body);
}

// One function for each file of benchmarks.
void add_value_benchmarks();
void add_map_benchmarks();
void add_stream_benchmarks();
void add_json_benchmarks();
void add_rendering_benchmarks();
void add_name_benchmarks();
void add_query_benchmarks();
void add_crypto_benchmarks();

} // namespace vxbench
