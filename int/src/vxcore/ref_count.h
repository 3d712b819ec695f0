#pragma once

#include "vxcore/export.h"
#include "vxcore/fwd.h"
#include "vxcore/single_thread_impl.h"

#include <atomic>

namespace vxcore {

/// A reference count that threads may share.
///
/// Cost. `increment` is one relaxed atomic addition, `decrement` another, and both are plain ones
/// while the process has one thread. `decrement` of a unique count is one plain load: no other
/// thread holds a reference then, so none can change the count meanwhile.
///
/// The number has 32 bits and its overflow is not checked.
class VXCORE_API AtomicRefCount {
  public:
    /// @param n  References that exist already.
    explicit constexpr AtomicRefCount(unsigned int n) noexcept : m_count(n) {}

    AtomicRefCount(AtomicRefCount const &) = delete;
    AtomicRefCount & operator=(AtomicRefCount const &) = delete;

    /// Adds one reference. The caller holds one already, or the object is new and nobody does.
    void increment() noexcept { impl::add_to_count(m_count, 1); }

    /// Drops one reference. Returns true if it was the last; do not use the count after that. What
    /// all other owners did before they dropped theirs is then visible to the caller.
    [[nodiscard]] bool decrement() noexcept {
        if (is_unique()) {
            return true;
        }
        if (impl::is_single_threaded()) {
            m_count.store(m_count.load(std::memory_order_relaxed) - 1, std::memory_order_relaxed);
            return false; // it was not unique
        }
        return m_count.fetch_sub(1, std::memory_order_acq_rel) == 1;
    }

    /// True if exactly one reference is left. An acquire load: what other owners did before they
    /// dropped theirs is visible to the caller, which may therefore write in place.
    bool is_unique() const noexcept { return m_count.load(std::memory_order_acquire) == 1; }

  private:
    std::atomic<unsigned int> m_count;
};

/// The same functions with a plain number, for objects that never leave their thread.
class VXCORE_API NonAtomicRefCount {
  public:
    explicit constexpr NonAtomicRefCount(unsigned int n) noexcept : m_count(n) {}

    NonAtomicRefCount(NonAtomicRefCount const &) = delete;
    NonAtomicRefCount & operator=(NonAtomicRefCount const &) = delete;

    void increment() noexcept { ++m_count; }

    [[nodiscard]] bool decrement() noexcept { return --m_count == 0; }

    bool is_unique() const noexcept { return m_count == 1; }

  private:
    unsigned int m_count;
};

/// Base of objects that live as long as a `RefCountPtr` refers to them.
///
/// A new object has no holder: the first `RefCountPtr` made from its address is its first
/// reference. Copying an object copies nothing of the count. Objects are made with `new` and
/// destroyed with `delete`, unless the class overrides `destroy()`. A protected or private
/// destructor keeps other code from deleting them.
///
/// `Count` is `AtomicRefCount` or `NonAtomicRefCount`. References count as const: a const object
/// may be shared, and the last `RefCountPtr` to it destroys it.
///
///     class Node final : public RefCounted<AtomicRefCount> {
///       public:
///         explicit Node(std::string name);
///
///       private:
///         ~Node() override = default;
///     };
template <typename Count>
class VXCORE_API RefCounted {
  public:
    /// Leaves the count alone: the holders of this object stay its holders.
    RefCounted & operator=(RefCounted const &) noexcept { return *this; }

    /// Adds a reference, for code that cannot use a `RefCountPtr`.
    void add_ref() const noexcept { m_count.increment(); }

    /// Drops a reference that `add_ref()` added or `RefCountPtr::detach()` returned. The object is
    /// destroyed with the last one.
    void release_ref() const noexcept {
        if (m_count.decrement()) {
            const_cast<RefCounted *>(this)->destroy();
        }
    }

    /// True when one `RefCountPtr` holds this object, so that its holder may change it. Another
    /// thread can add a reference only through that holder, so the answer stays true until it does.
    bool has_unique_ref() const noexcept { return m_count.is_unique(); }

  protected:
    /// A new object, copied or not, has no reference.
    RefCounted() noexcept : m_count(0) {}

    RefCounted(RefCounted const &) noexcept : m_count(0) {}

    /// Called once, when the last reference is gone, in the thread that dropped it. An override
    /// may free the object otherwise than by `delete`.
    virtual void destroy() noexcept { delete this; }

    virtual ~RefCounted() = default;

  private:
    mutable Count m_count;
};

} // namespace vxcore
