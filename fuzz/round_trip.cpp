/// Builds a value from the input and checks that it is the same after both forms.

#include "check.h"
#include "stream_checks.h"
#include "value_builder.h"

using namespace vxattribute;

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size) {
    vxfuzz::Input input(data, size);
    // Few inputs nest deep. Those that do come near the limit of 256 maps.
    unsigned int const nesting = input.byte();
    AttributeValue value = vxfuzz::ValueBuilder(input).value();
    for (unsigned int left = nesting < 200 ? 0 : nesting + 15; left != 0; --left) {
        value = make_map({{"nested", value}});
    }
    bool const written = vxfuzz::check_round_trip(value);
    vxfuzz::check(written || nesting >= 200, "a value that nests little can be written");
    return 0;
}
