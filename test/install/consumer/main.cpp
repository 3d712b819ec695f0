// A program that knows only the install tree: it exits with 0 when a map survives a stream.

#include "vxattribute/vxattribute.h"
#include "vxcore/error_exception.h"
#include "vxserialize/memory_reader.h"
#include "vxserialize/memory_writer.h"

int main() {
    using namespace vxattribute;
    AttributeMap const written = make_map({{"name", "consumer"}, {"size", 3}, {"ratio", 0.5}});
    vxserialize::MemoryWriter writer;
    written.write(writer);
    vxserialize::MemoryReader reader = writer.reader();
    AttributeMap const read(reader);
    try {
        get<bool>(read, "size");
    } catch (vxcore::ErrorException const & e) { // across the library's border
        return read == written && e.info()->matches(error::vxattribute_value_type) ? 0 : 1;
    }
    return 1;
}
