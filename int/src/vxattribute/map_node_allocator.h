#pragma once

/// Memory of a map's nodes. Include "vxattribute/attribute_map.h" instead.

#include <cstddef>
#include <new>

namespace vxattribute::impl {

/// Allocates nodes of one size from runs of memory that it owns, and reuses nodes that are freed.
///
/// Nodes of one map are side by side in the order in which they were made, which spares a walk over
/// the map most of its cache misses. Runs start at 2 nodes and double up to 256. They are freed
/// with the arena, not with their nodes.
///
/// Threads. Belongs to one holder, which is written by one thread at a time.
class MapNodeArena {
  public:
    /// Empty; the first node takes the first run.
    MapNodeArena() noexcept = default;

    /// Makes its first run for `count` nodes.
    explicit MapNodeArena(std::size_t count) noexcept { expect(count); }

    MapNodeArena(MapNodeArena const &) = delete;
    MapNodeArena & operator=(MapNodeArena const &) = delete;

    ~MapNodeArena() { release_runs(); }

    /// Memory for a node of `size` bytes: a freed node, the next place of the run, or a new run.
    ///
    /// @param size  In bytes, the same in all calls, at least a pointer and a multiple of its
    ///              alignment.
    /// @raises std::bad_alloc: no memory for a run; the arena is as it was.
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

    /// Keeps the memory of a node that `allocate` returned for the next one.
    void free(void * node) noexcept { m_free = ::new (node) Node{m_free}; }

    /// Announces `count` nodes: the next run is made for exactly as many. 0 changes nothing.
    void expect(std::size_t count) noexcept {
        if (count != 0) {
            m_runNodes = count;
        }
    }

    /// Frees all runs.
    ///
    /// @pre  No node is in use.
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
    static constexpr std::size_t first_run = 2; // nodes
    static constexpr std::size_t max_run = 256; // nodes

    /// A freed node, or the head of a run: both are in a list.
    struct Node {
        Node * next;
    };

    /// Bytes before the first node of a run, which keep its alignment.
    static constexpr std::size_t head_size = alignof(std::max_align_t);

    void add_run(std::size_t size) {
        void * const block = ::operator new(head_size + m_runNodes * size);
        m_runs = ::new (block) Node{m_runs};
        m_next = static_cast<char *>(block) + head_size;
        m_end = m_next + m_runNodes * size;
        m_runNodes = m_runNodes < max_run / 2 ? 2 * m_runNodes : max_run;
    }

    Node * m_free = nullptr;            // nodes for reuse
    Node * m_runs = nullptr;            // all runs, the newest first
    char * m_next = nullptr;            // the first unused node of the newest run
    char * m_end = nullptr;             // of the newest run
    std::size_t m_runNodes = first_run; // of the next run
};

/// The allocator of a map's tree: takes nodes from an arena, or from the heap when it has none.
///
/// The arena must outlive the tree. Allocators of one arena are equal, so trees that share an arena
/// can exchange nodes.
template <typename T>
class MapNodeAllocator {
  public:
    using value_type = T;

    /// Without an arena: each node is an allocation of its own.
    MapNodeAllocator() noexcept = default;

    /// @param arena  Is not owned; null means none.
    explicit MapNodeAllocator(MapNodeArena * arena) noexcept : m_arena(arena) {}

    /// The same arena for nodes of another type, as containers ask for.
    template <typename U>
    MapNodeAllocator(MapNodeAllocator<U> const & other) noexcept : m_arena(other.arena()) {}

    /// A copied tree does not use the arena of its source, which may be destroyed first.
    MapNodeAllocator select_on_container_copy_construction() const noexcept {
        return MapNodeAllocator();
    }

    /// Memory for one node; a tree never asks for more at once.
    T * allocate(std::size_t) {
        return static_cast<T *>(m_arena != nullptr ? m_arena->allocate(sizeof(T))
                                                   : ::operator new(sizeof(T)));
    }

    /// Gives the memory of one node back.
    void deallocate(T * node, std::size_t) noexcept {
        if (m_arena != nullptr) {
            m_arena->free(node);
        } else {
            ::operator delete(node);
        }
    }

    /// Null when there is none.
    MapNodeArena * arena() const noexcept { return m_arena; }

    template <typename U>
    bool operator==(MapNodeAllocator<U> const & other) const noexcept {
        return m_arena == other.arena();
    }

  private:
    MapNodeArena * m_arena = nullptr;
};

} // namespace vxattribute::impl
