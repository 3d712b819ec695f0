// A program that is built against the install tree only. It exits with 0 when a map survives a
// stream, failures are caught by any of their types, and the program and the library see the same
// objects of the library, wherever the linker put them.

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
    bool const sameObjects =
        &read.query("none") == &AttributeValue::null &&
        &AttributeValue("").type() == &ValueTypeId::typeString &&
        &defaultTraceFormatter.line_prefix() == &TraceFormatter().line_prefix();
    try {
        get<bool>(read, "size");
    } catch (std::exception const & e) {
        auto const & failure = dynamic_cast<vxcore::ErrorException const &>(e);
        bool const matches = failure.info()->matches(error::vxattribute_value_type);
        return read == written && sameObjects && matches ? 0 : 1;
    }
    return 1;
}
