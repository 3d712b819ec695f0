#include "vxattribute/attribute_map.h"
#include "vxattribute/attribute_name_coder.h"
#include "vxattribute/attribute_value_marshaler.h"
#include "vxserialize/reader.h"
#include "vxserialize/writer.h"

#include <algorithm>

namespace vxattribute {

namespace {

/// The count of a list is a hint for the first run of nodes, which is small memory at the most.
constexpr unsigned int maxExpected = 256;

} // namespace

using MapHolder = AttributeMapBase::MapHolder;

MapHolder::MapHolder(vxserialize::Reader & reader) : MapHolder() {
    m_arena.expect(std::min(reader.begin_list(), maxExpected));
    while (reader.has_next()) {
        AttributeValue & value = find_or_make(AttributeName(reader.read_string_key()));
        read_attribute_value(reader, value);
    }
}

MapHolder::MapHolder(vxserialize::Reader & reader, IAttributeNameDecoder & decoder) : MapHolder() {
    m_arena.expect(std::min(reader.begin_list(), maxExpected));
    while (reader.has_next()) {
        AttributeValue & value = find_or_make(decoder.read_attribute_name(reader));
        read_attribute_value(reader, decoder, value);
    }
}

void MapHolder::write(vxserialize::Writer & writer) const {
    writer.begin_list(static_cast<unsigned int>(m_map.size()));
    for (auto element = m_map.begin(); element != m_map.end(); ++element) {
        if (element != m_map.begin()) {
            writer.next_list_item();
        }
        write_element_aux(writer, *element);
    }
    writer.end_list();
}

void MapHolder::write(vxserialize::Writer & writer, IAttributeNameEncoder & encoder) const {
    writer.begin_list(static_cast<unsigned int>(m_map.size()));
    for (auto element = m_map.begin(); element != m_map.end(); ++element) {
        if (element != m_map.begin()) {
            writer.next_list_item();
        }
        write_element_aux(writer, encoder, *element);
    }
    writer.end_list();
}

void AttributeMapBase::write(vxserialize::Writer & writer) const {
    m_pImpl->write(writer);
}

void AttributeMapBase::write(vxserialize::Writer & writer, IAttributeNameEncoder & encoder) const {
    m_pImpl->write(writer, encoder);
}

void AttributeMapBase::write_element_aux(vxserialize::Writer & writer, value_type const & element) {
    element.first.write(writer);
    write_attribute_value(writer, element.second);
}

void AttributeMapBase::write_element_aux(vxserialize::Writer & writer,
                                         IAttributeNameEncoder & encoder,
                                         value_type const & element) {
    encoder.write_attribute_name(writer, element.first);
    write_attribute_value(writer, encoder, element.second);
}

} // namespace vxattribute
