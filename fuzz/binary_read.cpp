/// Tests the binary reader with arbitrary bytes, cut into segments of two sizes in turn, and with
/// the same bytes borrowed.

#include "stream_checks.h"

#include "vxserialize/memory_reader.h"

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size) {
    vxfuzz::ReaderInput input;
    if (!input.parse(data, size)) {
        return 0;
    }
    // 0 leaves the bytes in one piece.
    unsigned int const first = input.pieces == 0 ? 0xFFFFFFFF : 1 + (input.pieces & 15);
    unsigned int const second = 1 + (input.pieces >> 4);
    vxserialize::MemoryReader reader(vxfuzz::cut(input.bytes, first, second));
    vxfuzz::check_borrowed(input, vxfuzz::check_reading(reader, input));
    return 0;
}
