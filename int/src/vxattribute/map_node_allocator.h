#pragma once

/// Memory of a map's nodes. Include "vxattribute/attribute_map.h" instead.
///
/// Each holder of a map's content has an arena, declared before the tree that uses it. A holder for
/// a known number of elements announces it with `expect`, so that all nodes are in one run.

#include <cstddef>
#include <new>

namespace vxattribute::impl {

/// Allocates nodes of one size from runs of memory that it owns, and reuses nodes that are freed.
///
/// Nodes of one map are side by side in the order in which they were made, which spares a walk over
/// the map most of its cache misses. Runs start at 2 nodes and double up to 256. They are freed
/// with the arena, not with their nodes: removing elements from a map returns no memory to the heap
/// until the map is cleared or destroyed.
///
/// Cost. O(1) per node and no heap call but one per run. A run takes 16 bytes more than its nodes
/// on a 64-bit machine.
///
/// Threads. Belongs to one holder, which is written by one thread at a time. Nothing is
/// synchronised.
///
///     MapNodeArena arena(3);                    // three nodes in one run
///     void * const node = arena.allocate(64);
///     arena.free(node);
class MapNodeArena {
  public:
    /// Empty; the first node takes the first run.
    MapNodeArena() noexcept = default;

    /// The first run will be for `count` nodes. Takes no memory yet.
    explicit MapNodeArena(std::size_t count) noexcept { expect(count); }

    MapNodeArena(MapNodeArena const &) = delete;
    MapNodeArena & operator=(MapNodeArena const &) = delete;

    /// Frees all runs. Objects in them must be destroyed already.
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

    /// Keeps the memory of a node that `allocate` returned for the next one: the node freed last is
    /// reused first.
    ///
    /// @param node  From this arena, its object destroyed. Its first bytes are overwritten.
    void free(void * node) noexcept { m_free = ::new (node) Node{m_free}; }

    /// Announces `count` nodes: the next run is made for exactly as many, even above 256. Later
    /// runs follow the rule of the class. Takes no memory yet. 0 changes nothing.
    void expect(std::size_t count) noexcept {
        if (count != 0) {
            m_runNodes = count;
        }
    }

    /// Frees all runs. The arena is then as a default one and can be used again. O(number of runs).
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

    /// Takes a run of `m_runNodes` nodes from the heap and continues there. Changes nothing when
    /// the heap raises.
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
///
/// It meets the requirements of a standard allocator for node-based containers, whose nodes have
/// one size. It is not for containers that allocate arrays. Assignment and exchange of trees leave
/// each its own allocator.
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
    ///
    /// @raises std::bad_alloc: no memory for a node, or for a run of the arena.
    T * allocate(std::size_t) {
        return static_cast<T *>(m_arena != nullptr ? m_arena->allocate(sizeof(T))
                                                   : ::operator new(sizeof(T)));
    }

    /// Returns the memory of one node to the arena, or to the heap when there is none.
    void deallocate(T * node, std::size_t) noexcept {
        if (m_arena != nullptr) {
            m_arena->free(node);
        } else {
            ::operator delete(node);
        }
    }

    /// The arena; null when there is none.
    MapNodeArena * arena() const noexcept { return m_arena; }

    /// True when each can free what the other allocated.
    template <typename U>
    bool operator==(MapNodeAllocator<U> const & other) const noexcept {
        return m_arena == other.arena();
    }

  private:
    MapNodeArena * m_arena = nullptr;
};

} // namespace vxattribute::impl
