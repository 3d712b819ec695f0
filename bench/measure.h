#pragma once

#include <benchmark/benchmark.h>

#include <string>

namespace vxbench {

/// Returns the number of calls of `operator new` in this thread so far. What peers take from malloc
/// is not counted.
unsigned long long allocation_count() noexcept;

/// Measures `operation` and reports beside the time:
///
/// - `units`: how many things one call does, such as attributes written. The table divides by it.
/// - `allocations`: calls of `operator new` in a second call, when everything is warm.
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

/// Registers the benchmark "work/peer". All peers of a work do the same.
template <typename Body>
benchmark::internal::Benchmark * add(std::string const & work, std::string const & peer,
                                     Body body) {
    return benchmark::RegisterBenchmark((work + "/" + peer).c_str(), body);
}

// Register the benchmarks of one file each.
void add_value_benchmarks();
void add_map_benchmarks();
void add_stream_benchmarks();
void add_json_benchmarks();
void add_scale_benchmarks();
void add_rendering_benchmarks();
void add_name_benchmarks();
void add_query_benchmarks();
void add_bind_benchmarks();
void add_crypto_benchmarks();

} // namespace vxbench
