#include "vxserialize/reader.h"

#include "vxserialize/memory_list.h"

namespace vxserialize {

Reader::~Reader() = default;

vxcore::RefCountPtr<MemoryList> Reader::read_binary_as_memory_list() {
    ReadStreamPtr const stream = read_binary();
    vxcore::RefCountPtr<MemoryList> list = MemoryList::create();
    unsigned char bytes[4096];
    unsigned int size = sizeof(bytes);
    while (size == sizeof(bytes)) { // a short read is the last one
        size = stream->read(bytes, sizeof(bytes));
        list->append(bytes, size);
    }
    return list;
}

vxcore::RefCountPtr<MemoryList> read_memory_list_as_binary(Reader & reader) {
    return reader.read_binary_as_memory_list();
}

} // namespace vxserialize
