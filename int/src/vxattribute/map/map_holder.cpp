#include "vxattribute/attribute_map.h"
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

/// The standard library copies the shape of a tree, so nothing is compared or balanced. The arena
/// knows the number of nodes beforehand and puts them into one run.
MapHolder::MapHolder(Map const & map)
    : m_arena(map.size()), m_map(map, Map::allocator_type(&m_arena)) {}

MapHolder::~MapHolder() = default;

AttributeMapBase::HolderPtr MapHolder::clone() const {
    return vxcore::make_ref_counted<MapHolder>(m_map);
}

AttributeValue & MapHolder::find_or_make(AttributeName && name) {
    // Names mostly come in map order, as in a stream that this process wrote: try the end first.
    bool const isLast = !m_map.empty() && m_map.rbegin()->first < name;
    auto const hint = isLast ? m_map.end() : m_map.lower_bound(name);
    if (hint != m_map.end() && hint->first == name) {
        return hint->second;
    }
    return m_map.emplace_hint(hint, std::move(name), AttributeValue())->second;
}

void MapHolder::clear() noexcept {
    // In this order: no node may be in use when its run is freed.
    m_map.clear();
    m_arena.release_runs();
}

namespace {

/// The holders of this thread whose counts have dropped to 0 and that still have their elements.
/// Plain data without a destructor, so that maps may be destroyed in any destructor of the thread.
thread_local constinit MapHolder * deadHolders __attribute__((tls_model("initial-exec"))) = nullptr;
thread_local constinit bool isDraining __attribute__((tls_model("initial-exec"))) = false;

} // namespace

// Deleting a holder releases the maps nested in it, so this function is called again for their
// holders. The inner calls only queue a holder; the outermost call empties the queue. So the stack
// stays flat, however deep the maps nest. The link of the queue is a member of the holder: queueing
// allocates nothing and cannot fail.
void MapHolder::destroy() noexcept {
    m_nextDead = deadHolders;
    deadHolders = this;
    if (isDraining) {
        return;
    }
    isDraining = true;
    while (MapHolder * const holder = deadHolders) {
        deadHolders = holder->m_nextDead;
        delete holder;
    }
    isDraining = false;
}

} // namespace vxattribute
