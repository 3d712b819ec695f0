#include "vxattribute/attribute_map.h"
#include "vxattribute/attribute_name_coder.h"
#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/block_cache_internal.h"
#include "vxattribute/map_builder_internal.h"
#include "vxserialize/reader.h"
#include "vxserialize/writer.h"

#include <algorithm>

namespace vxattribute {

namespace {

/// The count of a list is a hint for the first run of nodes, which is small memory at the most.
constexpr unsigned int maxExpected = 256;

} // namespace

using MapHolder = AttributeMapBase::MapHolder;

void * MapHolder::operator new(std::size_t size) {
    return impl::BlockCache::allocate(size);
}

void MapHolder::operator delete(void * holder, std::size_t size) noexcept {
    impl::BlockCache::free(holder, size);
}

MapHolder::MapHolder() : m_map(Map::allocator_type(&m_arena)) {}

/// Copies the tree as it is, which needs no balancing, into one run of nodes.
MapHolder::MapHolder(Map const & map)
    : m_arena(map.size()), m_map(map, Map::allocator_type(&m_arena)) {}

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

MapHolder::~MapHolder() = default;

AttributeMapBase::HolderPtr MapHolder::clone() const {
    return vxcore::make_ref_counted<MapHolder>(m_map);
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

AttributeValue & MapHolder::find_or_make(AttributeName && name) {
    // A stream of this process has its names in map order: the next one goes behind the last.
    bool const isLast = !m_map.empty() && m_map.rbegin()->first < name;
    auto const hint = isLast ? m_map.end() : m_map.lower_bound(name);
    if (hint != m_map.end() && hint->first == name) {
        return hint->second;
    }
    return m_map.emplace_hint(hint, std::move(name), AttributeValue())->second;
}

AttributeMap impl::MapBuilder::take(std::size_t start) {
    auto holder = vxcore::make_ref_counted<MapHolder>();
    holder->m_arena.expect(m_elements.size() - start);
    for (auto element = m_elements.begin() + static_cast<std::ptrdiff_t>(start);
         element != m_elements.end(); ++element) {
        holder->find_or_make(std::move(element->first)) = std::move(element->second);
    }
    m_elements.resize(start);
    return AttributeMap(holder);
}

void MapHolder::clear() noexcept {
    m_map.clear();
    m_arena.release_runs();
}

namespace {

/// The holders of this thread that have died and still have their elements. Plain data, so that
/// maps may die in any destructor of the thread.
thread_local constinit MapHolder * deadHolders __attribute__((tls_model("initial-exec"))) = nullptr;
thread_local constinit bool isBurying __attribute__((tls_model("initial-exec"))) = false;

} // namespace

void MapHolder::destroy() noexcept {
    m_nextDead = deadHolders;
    deadHolders = this;
    if (isBurying) {
        return; // a map around this one is being taken apart: it comes back for this holder
    }
    isBurying = true;
    while (MapHolder * const holder = deadHolders) {
        deadHolders = holder->m_nextDead;
        delete holder;
    }
    isBurying = false;
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
