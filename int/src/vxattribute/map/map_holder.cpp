#include "vxattribute/attribute_map.h"
#include "vxattribute/map/map_builder_internal.h"
#include "vxattribute/value/block_cache_internal.h"

namespace vxattribute {

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

MapHolder::~MapHolder() = default;

AttributeMapBase::HolderPtr MapHolder::clone() const {
    return vxcore::make_ref_counted<MapHolder>(m_map);
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

} // namespace vxattribute
