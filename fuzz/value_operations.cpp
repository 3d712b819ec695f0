/// Runs sequences of operations on values and maps. Compares them with a plain model after each
/// step.

#include "operations_state.h"

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size) {
    vxfuzz::Input input(data, size);
    vxfuzz::OperationsState state(input);
    for (int steps = 0; steps < 100 && !input.at_end(); ++steps) {
        state.step();
    }
    return 0;
}
