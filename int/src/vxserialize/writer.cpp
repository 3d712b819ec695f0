#include "vxserialize/writer.h"

#include "vxserialize/memory_list.h"

#include <string>

namespace vxserialize {

Writer::~Writer() = default;

void Writer::write_memory_list(MemoryListBase const & list) {
    // For forms that need the bytes in one piece. Others override this and write segment by
    // segment.
    std::string bytes(list.size(), '\0');
    list.read_at(0, bytes.data(), list.size());
    write_binary(bytes.data(), list.size());
}

void write_memory_list_as_binary(Writer & writer,
                                 vxcore::RefCountPtr<MemoryList const> const & list) {
    if (list) {
        writer.write_memory_list(*list);
    } else {
        writer.write_binary(nullptr, 0);
    }
}

} // namespace vxserialize
