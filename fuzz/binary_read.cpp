/// The binary reader on any bytes. The first byte of the input tells how the rest is cut into
/// segments, the next four in which order values, attributes and maps are read.

#include "stream_checks.h"

#include "vxserialize/memory_reader.h"

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size) {
    if (size < 5) {
        return 0;
    }
    // 0 leaves the bytes in one piece.
    unsigned int const first = data[0] == 0 ? 0xFFFFFFFF : 1 + (data[0] & 15);
    unsigned int const second = 1 + (data[0] >> 4);
    unsigned int shapes = 0;
    for (int i = 1; i < 5; ++i) {
        shapes = shapes << 8 | data[i];
    }
    std::string_view const bytes(reinterpret_cast<char const *>(data) + 5, size - 5);
    vxserialize::MemoryReader reader(vxfuzz::cut(bytes, first, second));
    vxfuzz::check_reading(reader, shapes, bytes.size());
    return 0;
}
