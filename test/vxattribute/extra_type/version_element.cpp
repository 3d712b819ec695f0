#include "vxattribute/trace/trace_list_internal.h"
#include "vxattribute/value/typed_value_internal.h"
#include "vxserialize/reader.h"
#include "vxserialize/writer.h"

namespace vxtest {

vxserialize::Writer & operator<<(vxserialize::Writer & writer, Version const & version) {
    writer.write_uint(version.major * 256u + version.minor);
    return writer;
}

vxserialize::Reader & operator>>(vxserialize::Reader & reader, Version & version) {
    unsigned int const number = reader.read_uint();
    version = {static_cast<unsigned char>(number / 256), static_cast<unsigned char>(number)};
    return reader;
}

} // namespace vxtest

void vxattribute::impl::render_elements(TraceSink & sink, vxtest::Version const * begin,
                                        vxtest::Version const * end) {
    render_list(sink, sink.settings().list_default, begin, end,
                [](TraceSink & out, vxtest::Version version) {
                    out.append(std::to_string(version.major) + "." + std::to_string(version.minor));
                });
}

VXATTRIBUTE_INSTANTIATE_SINGLE_ELEMENT(vxtest::Version);
