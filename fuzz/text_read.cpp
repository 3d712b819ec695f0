/// The text reader on any bytes. The first byte of the input tells the size of the reader's buffer
/// and whether the stream knows its size, the next four in which order values, attributes and maps
/// are read.

#include "stream_checks.h"

#include "vxserialize/text_reader.h"

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(unsigned char const * data, std::size_t size) {
    if (size < 5) {
        return 0;
    }
    unsigned int shapes = 0;
    for (int i = 1; i < 5; ++i) {
        shapes = shapes << 8 | data[i];
    }
    std::string_view const text(reinterpret_cast<char const *>(data) + 5, size - 5);
    vxfuzz::ViewStream stream(text, (data[0] & 0x80) != 0);
    vxserialize::TextReader reader(stream, 1 + (data[0] & 0x7F));
    vxfuzz::check_reading(reader, shapes, text.size());
    return 0;
}
