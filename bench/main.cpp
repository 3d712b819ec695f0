// Runs all benchmarks in one program, so that each figure is printed with its peers of the same
// run.

#include "measure.h"

int main(int argc, char ** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    vxbench::add_value_benchmarks();
    vxbench::add_map_benchmarks();
    vxbench::add_stream_benchmarks();
    vxbench::add_json_benchmarks();
    vxbench::add_scale_benchmarks();
    vxbench::add_rendering_benchmarks();
    vxbench::add_name_benchmarks();
    vxbench::add_query_benchmarks();
    vxbench::add_bind_benchmarks();
    vxbench::add_crypto_benchmarks();
    benchmark::RunSpecifiedBenchmarks();
}
