#pragma once

#include "vxcore/export.h"

#include <new>
#include <utility>

namespace vxcore {

namespace impl {

/// Base of all static instances: the list of clean-ups that run when the process ends.
///
/// Threads. Registering and removing take one lock. The clean-ups run without it.
class VXCORE_API StaticInstanceBase {
  public:
    /// A clean-up gets the argument of its registration. It cannot report a failure.
    using Cleanup = void (*)(void * argument) noexcept;

    /// Registers `function(argument)` to be called when this library unloads. Clean-ups run in the
    /// reverse order of their registration. A registration that comes later than that is ignored.
    ///
    /// @raises std::bad_alloc: no memory; nothing is registered.
    static void register_cleanup_aux(Cleanup function, void * argument);

    /// Removes the latest registration of that pair; does nothing if there is none.
    ///
    /// @cost O(registrations), from the latest back.
    static void unregister_cleanup_aux(Cleanup function, void * argument) noexcept;

    /// Raises "error.vxcore.destroyed".
    [[noreturn]] static void throw_destroyed_error();
};

} // namespace impl

/// An object with static storage that detects an access after its destruction.
///
/// The object is built with the instance and destroyed at unload, with the instance or by the
/// clean-up list of this library, whichever comes first. From then on `get_ptr()` is null and every
/// other access raises "error.vxcore.destroyed". That holds while the memory of the instance is
/// there, which ends when its library is unloaded.
///
/// Cost. The object is inside the instance, without an allocation. An access compares one pointer
/// with null.
///
/// Threads. An access takes no lock: threads that use the object must end before it is destroyed.
///
///     StaticInstance<Registry> g_registry;
///     if (Registry * const registry = g_registry.get_ptr()) { // may run while the process ends
///         registry->remove(name);
///     }
template <typename T>
class StaticInstance : public impl::StaticInstanceBase {
  public:
    /// Builds the object from the arguments.
    ///
    /// @raises What the constructor of `T` raises. std::bad_alloc: the clean-up cannot be
    ///         registered; the object is destroyed again.
    template <typename... Args>
    explicit StaticInstance(Args &&... args) {
        m_object = ::new (static_cast<void *>(m_storage)) T(std::forward<Args>(args)...);
        try {
            register_cleanup_aux(&StaticInstance::clean_up, this);
        } catch (...) {
            destroy();
            throw;
        }
    }

    StaticInstance(StaticInstance const &) = delete;
    StaticInstance & operator=(StaticInstance const &) = delete;

    /// Destroys the object unless that was done before.
    ~StaticInstance() {
        unregister_cleanup_aux(&StaticInstance::clean_up, this);
        destroy();
    }

    /// Returns null after the object is destroyed.
    T * get_ptr() const noexcept { return m_object; }

    /// The object, as the two operators below.
    ///
    /// @raises error.vxcore.destroyed: the object is destroyed.
    /// @keeps  The reference holds until the object is destroyed.
    T & get() const VXCORE_LIFETIMEBOUND {
        if (m_object == nullptr) {
            throw_destroyed_error();
        }
        return *m_object;
    }

    T & operator*() const VXCORE_LIFETIMEBOUND { return get(); }

    T * operator->() const { return &get(); }

    /// Destroys the object early; does nothing if it is destroyed already.
    void destroy() noexcept {
        if (T * const object = std::exchange(m_object, nullptr)) {
            object->~T();
        }
    }

  private:
    static void clean_up(void * argument) noexcept {
        static_cast<StaticInstance *>(argument)->destroy();
    }

    alignas(T) unsigned char m_storage[sizeof(T)];
    T * m_object = nullptr;
};

} // namespace vxcore
