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

MapHolder::MapHolder() = default;

MapHolder::MapHolder(Map const & map) : m_map(map) {}

MapHolder::MapHolder(unsigned int room) noexcept : m_room(room), m_map(this + 1, room) {}

MapHolder::~MapHolder() = default;

namespace {

constexpr std::size_t block_size(std::size_t room) noexcept {
    return sizeof(MapHolder) + (room != 0 ? impl::TreeMemory::run_bytes(room) : 0);
}

/// Blocks of holders stay within the sizes that the block cache keeps; this memory is also what a
/// map keeps when it is cleared.
constexpr std::size_t maxRoom = 22;
static_assert(block_size(maxRoom) <= 1016 || sizeof(void *) != 8);

/// For the elements that an empty map gets first.
constexpr std::size_t firstRoom = 3;

} // namespace

AttributeMapBase::HolderPtr MapHolder::make(std::size_t room) {
    if (room == 0 || room > maxRoom) {
        HolderPtr holder = vxcore::make_ref_counted<MapHolder>();
        holder->m_map.reserve(room);
        return holder;
    }
    void * const block = impl::BlockCache::allocate(block_size(room));
    return HolderPtr(::new (block) MapHolder(static_cast<unsigned int>(room)));
}

AttributeMapBase::HolderPtr MapHolder::clone() const {
    HolderPtr copy = make(m_map.empty() ? firstRoom : m_map.size());
    copy->m_map.assign_copy(m_map);
    return copy;
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
        std::size_t const size = block_size(holder->m_room);
        holder->~MapHolder();
        impl::BlockCache::free(holder, size);
    }
    isDraining = false;
}

} // namespace vxattribute
