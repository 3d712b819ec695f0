#include "vxattribute/attribute_name_coder.h"
#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/stream/contexts_internal.h"

namespace vxattribute {

using MapHolder = AttributeMapBase::MapHolder;
using impl::ReadContext;
using impl::WriteContext;

void write_attribute_map(vxserialize::Writer & writer, AttributeMapBase const & map,
                         StreamOptions const & options) {
    WriteContext(writer, nullptr, options.sorted_names).write_map(map);
}

void write_attribute_map(vxserialize::Writer & writer, IAttributeNameEncoder & encoder,
                         AttributeMapBase const & map, StreamOptions const & options) {
    WriteContext(writer, &encoder, options.sorted_names).write_map(map);
}

AttributeMapBase::AttributeMapBase(vxserialize::Reader & reader)
    : AttributeMapBase(ReadContext(reader).read_map()) {}

AttributeMapBase::AttributeMapBase(vxserialize::Reader & reader, IAttributeNameDecoder & decoder)
    : AttributeMapBase(ReadContext(reader, &decoder).read_map()) {}

MapHolder::MapHolder(vxserialize::Reader & reader)
    : MapHolder(AttributeMap(reader).m_pImpl->m_map) {}

MapHolder::MapHolder(vxserialize::Reader & reader, IAttributeNameDecoder & decoder)
    : MapHolder(AttributeMap(reader, decoder).m_pImpl->m_map) {}

void MapHolder::write(vxserialize::Writer & writer) const {
    WriteContext(writer).write_tree(m_map);
}

void MapHolder::write(vxserialize::Writer & writer, IAttributeNameEncoder & encoder) const {
    WriteContext(writer, &encoder).write_tree(m_map);
}

void AttributeMapBase::write(vxserialize::Writer & writer) const {
    WriteContext(writer).write_map(*this);
}

void AttributeMapBase::write(vxserialize::Writer & writer, IAttributeNameEncoder & encoder) const {
    WriteContext(writer, &encoder).write_map(*this);
}

void AttributeMapBase::write_element_aux(vxserialize::Writer & writer, value_type const & element) {
    WriteContext(writer).write_element(element);
}

void AttributeMapBase::write_element_aux(vxserialize::Writer & writer,
                                         IAttributeNameEncoder & encoder,
                                         value_type const & element) {
    WriteContext(writer, &encoder).write_element(element);
}

} // namespace vxattribute
