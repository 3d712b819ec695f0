#include "vxattribute/attribute_name_coder.h"
#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/sorted_by_name.h"
#include "vxattribute/stream/contexts_internal.h"
#include "vxattribute/stream/list_room_internal.h"
#include "vxserialize/reader.h"
#include "vxserialize/writer.h"

namespace vxattribute {

using MapHolder = AttributeMapBase::MapHolder;
using impl::ReadContext;
using impl::WriteContext;

namespace {

using Element = AttributeMapBase::value_type;
using MapIterator = AttributeMapBase::const_iterator;

Element const & element_at(MapIterator position) noexcept {
    return *position;
}

Element const & element_at(std::vector<MapIterator>::const_iterator position) noexcept {
    return **position;
}

/// Writes a map. JSON and rendering go through ElementsCursor for this; here its test per element
/// would take 3 % of the instructions of a binary write.
///
/// @param elements  A map, the tree in its holder, or iterators into it.
template <typename Elements>
void write_elements(WriteContext const & context, Elements const & elements) {
    vxserialize::Writer & writer = context.writer();
    writer.begin_list(static_cast<unsigned int>(elements.size()));
    auto const first = elements.begin();
    auto const last = elements.end();
    for (auto position = first; position != last; ++position) {
        if (position != first) {
            writer.next_list_item();
        }
        context.write_element(element_at(position));
    }
    writer.end_list();
}

} // namespace

void WriteContext::write_map(AttributeMapBase const & map) const {
    if (m_sortedNames) {
        write_elements(*this, sorted_by_name(map));
    } else {
        write_elements(*this, map);
    }
}

void WriteContext::write_tree(AttributeMapBase::Map const & tree) const {
    write_elements(*this, tree);
}

void WriteContext::write_element(Element const & element) const {
    if (m_encoder != nullptr) {
        m_encoder->write_attribute_name(m_writer, element.first);
    } else {
        m_writer.write_string_key(element.first.key());
    }
    write_value(element.second);
}

AttributeMap ReadContext::read_map() const {
    auto holder = vxcore::make_ref_counted<MapHolder>();
    read_map(*holder);
    return holder->m_map.empty() ? AttributeMap() : AttributeMap(holder); // see share_if_empty
}

void ReadContext::read_map(MapHolder & holder) const {
    // The arena gets its first run for the announced elements, within the limit for input.
    holder.m_arena.expect(impl::list_room(m_reader.begin_list(), impl::maxRoomForMapElements));
    // The name goes into the map before its value is read: the value is then read in its place. If
    // a value cannot be read, the caller drops the holder.
    while (m_reader.has_next()) {
        AttributeValue & value =
            holder.find_or_make(m_decoder != nullptr ? m_decoder->read_attribute_name(m_reader)
                                                     : AttributeName(m_reader.read_string_key()));
        read_value(value);
    }
}

// Public entry points

void write_attribute_map(vxserialize::Writer & writer, AttributeMapBase const & map,
                         StreamOptions const & options) {
    WriteContext(writer, nullptr, options.sorted_names).write_map(map);
}

void write_attribute_map(vxserialize::Writer & writer, IAttributeNameEncoder & encoder,
                         AttributeMapBase const & map, StreamOptions const & options) {
    WriteContext(writer, &encoder, options.sorted_names).write_map(map);
}

MapHolder::MapHolder(vxserialize::Reader & reader) : MapHolder() {
    ReadContext(reader).read_map(*this);
}

MapHolder::MapHolder(vxserialize::Reader & reader, IAttributeNameDecoder & decoder) : MapHolder() {
    ReadContext(reader, &decoder).read_map(*this);
}

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
