#include "vxattribute/trace/trace_list_internal.h"
#include "vxattribute/value/typed_value_internal.h"
#include "vxserialize/reader.h"
#include "vxserialize/writer.h"

vxserialize::Writer & vxtest::operator<<(vxserialize::Writer & writer, Version const & version) {
    writer.write_uint(version.major * 256u + version.minor);
    return writer;
}

vxserialize::Reader & vxtest::operator>>(vxserialize::Reader & reader, Version & version) {
    unsigned int const number = reader.read_uint();
    version = {static_cast<unsigned char>(number / 256), static_cast<unsigned char>(number)};
    return reader;
}

void vxattribute::impl::render_elements(TraceSink & sink, vxtest::Version const * begin,
                                        vxtest::Version const * end) {
    render_list(sink, sink.settings().list_default, begin, end,
                [](TraceSink & out, vxtest::Version const & version) {
                    out.append_number(static_cast<unsigned long long>(version.major));
                    out.append(".");
                    out.append_number(static_cast<unsigned long long>(version.minor));
                });
}

VXATTRIBUTE_INSTANTIATE_SINGLE_ELEMENT(vxtest::Version);
