#pragma once

/// Memory of a map's nodes. Include "vxattribute/attribute_map.h" instead.

#include <cstddef>
#include <new>

namespace vxattribute::impl {

/// Gives out nodes of one size from runs that it owns, and takes them back for reuse.
///
/// Nodes of one map lie side by side in the order in which they were made, which spares a walk over
/// the map most of its cache misses. The runs go with the arena.
class MapNodeArena {
  public:
    MapNodeArena() noexcept = default;

    /// For `count` nodes to come.
    explicit MapNodeArena(std::size_t count) noexcept { expect(count); }

    MapNodeArena(MapNodeArena const &) = delete;
    MapNodeArena & operator=(MapNodeArena const &) = delete;

    ~MapNodeArena() { release_runs(); }

    void * allocate(std::size_t size) {
        if (m_free != nullptr) {
            Node * const node = m_free;
            m_free = node->next;
            return node;
        }
        if (m_next == m_end) {
            add_run(size);
        }
        void * const node = m_next;
        m_next += size;
        return node;
    }

    void free(void * node) noexcept { m_free = ::new (node) Node{m_free}; }

    /// Says that `count` nodes are to come: the next run is made for just as many.
    void expect(std::size_t count) noexcept {
        if (count != 0) {
            m_runNodes = count;
        }
    }

    /// Gives all memory back. No node may be in use.
    void release_runs() noexcept {
        while (m_runs != nullptr) {
            Node * const run = m_runs;
            m_runs = run->next;
            ::operator delete(run);
        }
        m_free = nullptr;
        m_next = m_end = nullptr;
        m_runNodes = first_run;
    }

  private:
    static constexpr std::size_t first_run = 2;
    static constexpr std::size_t max_run = 256;

    /// A spent node, or the head of a run.
    struct Node {
        Node * next;
    };

    static constexpr std::size_t head_size = alignof(std::max_align_t);

    void add_run(std::size_t size) {
        void * const block = ::operator new(head_size + m_runNodes * size);
        m_runs = ::new (block) Node{m_runs};
        m_next = static_cast<char *>(block) + head_size;
        m_end = m_next + m_runNodes * size;
        m_runNodes = m_runNodes < max_run / 2 ? 2 * m_runNodes : max_run;
    }

    Node * m_free = nullptr;
    Node * m_runs = nullptr;
    char * m_next = nullptr;
    char * m_end = nullptr;
    std::size_t m_runNodes = first_run;
};

/// The allocator of a map's tree: takes nodes from an arena, or from the heap without one.
template <typename T>
class MapNodeAllocator {
  public:
    using value_type = T;

    MapNodeAllocator() noexcept = default;

    explicit MapNodeAllocator(MapNodeArena * arena) noexcept : m_arena(arena) {}

    template <typename U>
    MapNodeAllocator(MapNodeAllocator<U> const & other) noexcept : m_arena(other.arena()) {}

    /// A copy of a tree does not draw on the arena of its source, which may die first.
    MapNodeAllocator select_on_container_copy_construction() const noexcept {
        return MapNodeAllocator();
    }

    T * allocate(std::size_t) {
        return static_cast<T *>(m_arena != nullptr ? m_arena->allocate(sizeof(T))
                                                   : ::operator new(sizeof(T)));
    }

    void deallocate(T * node, std::size_t) noexcept {
        if (m_arena != nullptr) {
            m_arena->free(node);
        } else {
            ::operator delete(node);
        }
    }

    MapNodeArena * arena() const noexcept { return m_arena; }

    template <typename U>
    bool operator==(MapNodeAllocator<U> const & other) const noexcept {
        return m_arena == other.arena();
    }

  private:
    MapNodeArena * m_arena = nullptr;
};

} // namespace vxattribute::impl
