#include "vxattribute/bytes.h"

#include "vxattribute/stream/whole_stream_internal.h"
#include "vxcore/output_sink.h"
#include "vxserialize/memory_reader.h"
#include "vxserialize/memory_writer.h"

namespace vxattribute {

namespace {

using PackagesPtr = AttributeNamePackageSet::Ptr;
using ListPtr = vxcore::RefCountPtr<vxserialize::MemoryList>;

template <typename Object>
ListPtr list_of(Object const & object, PackagesPtr const & packages,
                StreamOptions const & options) {
    vxserialize::MemoryWriter writer;
    impl::write_whole(writer, object, packages, options.sorted_names);
    return writer.close_and_detach_memory_list();
}

void pass_on(ListPtr const & list, vxcore::OutputSink & sink) {
    for (auto segment = list->segment_read_iterator(); !segment.at_end(); ++segment) {
        sink.write(*segment);
    }
}

std::string string_of(ListPtr const & list) {
    std::string bytes;
    bytes.reserve(list->size());
    vxcore::StringSink sink(bytes);
    pass_on(list, sink);
    return bytes;
}

struct OpenedBytes {
    explicit OpenedBytes(vxcore::ByteView bytes) : reader(bytes) {}

    vxserialize::MemoryReader reader;
};

} // namespace

std::string to_bytes(AttributeValue const & value, PackagesPtr const & packages,
                     StreamOptions const & options) {
    return string_of(list_of(value, packages, options));
}

std::string to_bytes(AttributeMapBase const & map, PackagesPtr const & packages,
                     StreamOptions const & options) {
    return string_of(list_of(map, packages, options));
}

ListPtr to_memory_list(AttributeValue const & value, PackagesPtr const & packages,
                       StreamOptions const & options) {
    return list_of(value, packages, options);
}

ListPtr to_memory_list(AttributeMapBase const & map, PackagesPtr const & packages,
                       StreamOptions const & options) {
    return list_of(map, packages, options);
}

void write_bytes(vxcore::OutputSink & sink, AttributeValue const & value,
                 PackagesPtr const & packages, StreamOptions const & options) {
    pass_on(list_of(value, packages, options), sink);
}

void write_bytes(vxcore::OutputSink & sink, AttributeMapBase const & map,
                 PackagesPtr const & packages, StreamOptions const & options) {
    pass_on(list_of(map, packages, options), sink);
}

AttributeValue value_from_bytes(vxcore::ByteView bytes, PackagesPtr const & packages) {
    return impl::read_whole_value<OpenedBytes>(bytes, packages);
}

AttributeMap map_from_bytes(vxcore::ByteView bytes, PackagesPtr const & packages) {
    return impl::read_whole_map<OpenedBytes>(bytes, packages);
}

} // namespace vxattribute
