#include "vxattribute/message.h"

#include "vxattribute/bytes.h"

namespace vxattribute {

void write_message(vxcore::OutputSink & sink, AttributeMapBase const & map,
                   AttributeNamePackageSet::Ptr const & packages, StreamOptions const & options) {
    vxserialize::write_frame(sink, *to_memory_list(map, packages, options));
}

MessageReader::MessageReader(AttributeNamePackageSet::Ptr packages, Options const & options)
    : m_frames(options) {
    set_packages(std::move(packages));
}

/// Without packages, the error of a coded message would not name the package. With an empty set it
/// does.
void MessageReader::set_packages(AttributeNamePackageSet::Ptr packages) {
    m_packages = packages ? std::move(packages) : AttributeNamePackageSet::create();
}

std::optional<AttributeMap> MessageReader::next() {
    auto const frame = m_frames.next();
    return frame ? std::optional<AttributeMap>(map_from_bytes(*frame, m_packages)) : std::nullopt;
}

} // namespace vxattribute
