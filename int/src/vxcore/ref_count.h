#pragma once

#include "vxcore/export.h"
#include "vxcore/fwd.h"

#include <atomic>

namespace vxcore {

/// A reference count that threads may share.
///
/// Cost. `increment` is one relaxed atomic addition. `decrement` of a unique count is one plain
/// load: no other thread holds a reference then, so none can change the count meanwhile.
class VXCORE_API AtomicRefCount {
  public:
    explicit constexpr AtomicRefCount(unsigned int n) noexcept : m_count(n) {}

    AtomicRefCount(AtomicRefCount const &) = delete;
    AtomicRefCount & operator=(AtomicRefCount const &) = delete;

    void increment() noexcept { m_count.fetch_add(1, std::memory_order_relaxed); }

    /// Drops one reference. Returns true if it was the last; do not use the count after that.
    [[nodiscard]] bool decrement() noexcept {
        return is_unique() || m_count.fetch_sub(1, std::memory_order_acq_rel) == 1;
    }

    /// True if exactly one reference is left. An acquire load: what other owners did before they
    /// dropped theirs is visible to the caller, which may therefore write in place.
    bool is_unique() const noexcept { return m_count.load(std::memory_order_acquire) == 1; }

  private:
    std::atomic<unsigned int> m_count;
};

/// The same for objects that never leave their thread.
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
/// reference. Copying an object copies nothing of the count.
///
/// `Count` is `AtomicRefCount` or `NonAtomicRefCount`.
template <typename Count>
class VXCORE_API RefCounted {
  public:
    RefCounted & operator=(RefCounted const &) noexcept { return *this; }

    void add_ref() const noexcept { m_count.increment(); }

    void release_ref() const noexcept {
        if (m_count.decrement()) {
            const_cast<RefCounted *>(this)->destroy();
        }
    }

    /// True when one `RefCountPtr` holds this object, so that its holder may change it.
    bool has_unique_ref() const noexcept { return m_count.is_unique(); }

  protected:
    RefCounted() noexcept : m_count(0) {}

    RefCounted(RefCounted const &) noexcept : m_count(0) {}

    /// Called once, when the last reference is gone.
    virtual void destroy() noexcept { delete this; }

    virtual ~RefCounted() = default;

  private:
    mutable Count m_count;
};

} // namespace vxcore
