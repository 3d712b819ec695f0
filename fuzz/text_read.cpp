/// Tests the text reader with arbitrary bytes, through buffers of 1 to 128 bytes, over streams that
/// report their size or do not.

#include "stream_checks.h"

#include "vxserialize/text_reader.h"

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size) {
    vxfuzz::ReaderInput input;
    if (!input.parse(data, size)) {
        return 0;
    }
    vxfuzz::ViewStream stream(input.bytes, (input.pieces & 0x80) != 0);
    vxserialize::TextReader reader(stream, 1 + (input.pieces & 0x7F));
    vxfuzz::check_reading(reader, input);
    return 0;
}
