#pragma once

#include "vxcore/ref_count.h"

#include <compare>
#include <concepts>
#include <cstddef>
#include <utility>

namespace vxcore {

/// Owning pointer to an object derived from `RefCounted`: null, or one reference to the object.
///
/// The object is destroyed with its last reference. The count is in the object, so another
/// `RefCountPtr` may be made from its plain pointer as long as one holds it. `T` may be const.
/// Objects that refer to each other in a cycle are never destroyed.
///
/// The conversions from a raw pointer and to `bool` are explicit: with implicit ones a
/// `RefCountPtr` would silently become a number wherever a `bool` is accepted.
///
/// Cost. One pointer wide. A copy changes the count once; a move and a swap do not. No function
/// throws. `T` may be incomplete where pointers are only declared; copying and destroying one needs
/// the definition.
///
/// Threads. One pointer object: many readers or one writer. Pointers to the same object may be used
/// in separate threads if its count is an `AtomicRefCount`.
///
///     RefCountPtr<Node> node = make_ref_counted<Node>("root");
///     RefCountPtr<Node const> view = node; // a second reference
///
/// Exported, since templates over it are instantiated in one library and used in others.
template <typename T>
class VXCORE_API RefCountPtr {
  public:
    /// Null: no object and no reference.
    constexpr RefCountPtr() noexcept = default;

    constexpr RefCountPtr(std::nullptr_t) noexcept {}

    /// Adds a reference to `*object`; null is allowed. A pointer from `detach()` has one already:
    /// call `release_ref()` after that.
    explicit RefCountPtr(T * object) noexcept : m_object(object) { acquire(); }

    /// A copy adds a reference. A move passes it on and leaves `other` null.
    RefCountPtr(RefCountPtr const & other) noexcept : m_object(other.m_object) { acquire(); }

    RefCountPtr(RefCountPtr && other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}

    /// The same from a pointer to a derived class, or from one to a non-const object. For the
    /// opposite direction cast `get()` and make a new pointer from the result.
    template <typename U>
    requires std::convertible_to<U *, T *> RefCountPtr(RefCountPtr<U> const & other)
    noexcept : m_object(other.get()) { acquire(); }

    template <typename U>
    requires std::convertible_to<U *, T *> RefCountPtr(RefCountPtr<U> && other)
    noexcept : m_object(other.detach()) {}

    /// Drops the reference. The last one destroys the object, whose destructor runs in this thread.
    ~RefCountPtr() { release(m_object); }

    /// Takes the new reference before the old one is dropped, so that self-assignment, and
    /// assigning what the old object alone keeps alive, are safe.
    RefCountPtr & operator=(RefCountPtr const & other) noexcept {
        RefCountPtr(other).swap(*this);
        return *this;
    }

    RefCountPtr & operator=(RefCountPtr && other) noexcept {
        RefCountPtr(std::move(other)).swap(*this);
        return *this;
    }

    /// The object, or null. The plain pointer keeps nothing alive.
    T * get() const noexcept { return m_object; }

    /// @pre The pointer is not null.
    T & operator*() const noexcept { return *m_object; }

    T * operator->() const noexcept { return m_object; }

    /// True if the pointer is not null.
    explicit operator bool() const noexcept { return m_object != nullptr; }

    /// Exchanges the two references without touching a count.
    void swap(RefCountPtr & other) noexcept { std::swap(m_object, other.m_object); }

    /// Drops the reference, as the destructor does; the pointer is null afterwards. It is null
    /// already while the destructor of the object runs.
    void reset() noexcept { release(std::exchange(m_object, nullptr)); }

    /// Returns the object and passes its reference to the caller, which has to call
    /// `release_ref()` when done; the pointer is null afterwards.
    [[nodiscard]] T * detach() noexcept { return std::exchange(m_object, nullptr); }

    /// Compares addresses, not objects.
    friend bool operator==(RefCountPtr const & a, RefCountPtr const & b) noexcept {
        return a.m_object == b.m_object;
    }

    /// Order of the addresses: it means nothing but is total for as long as the objects live.
    friend std::strong_ordering operator<=>(RefCountPtr const & a, RefCountPtr const & b) noexcept {
        return std::compare_three_way()(a.m_object, b.m_object);
    }

    friend bool operator==(RefCountPtr const & a, std::nullptr_t) noexcept {
        return a.m_object == nullptr;
    }

  private:
    /// Null has no count: both do nothing for it.
    void acquire() const noexcept {
        if (m_object != nullptr) {
            m_object->add_ref();
        }
    }

    static void release(T * object) noexcept {
        if (object != nullptr) {
            object->release_ref();
        }
    }

    T * m_object = nullptr;
};

/// Makes a `T` from the arguments and returns its first reference.
///
/// @raises std::bad_alloc: no memory; and what the constructor raises. Nothing is left then.
/// @cost   One allocation, which holds object and count.
template <typename T, typename... Args>
[[nodiscard]] RefCountPtr<T> make_ref_counted(Args &&... args) {
    return RefCountPtr<T>(new T(std::forward<Args>(args)...));
}

/// A pointer to an interface together with an owner that keeps the object alive.
///
/// An interface has a protected destructor, so that ownership is separate. `Owner` is any type that
/// can be copied, usually a `RefCountPtr` to the class behind the interface. An empty `owner` is
/// for objects that need none, such as statics.
///
/// A copy copies the owner, so it costs what that costs. After a move the source still holds the
/// plain pointer, but no longer the owner: do not use it.
template <typename I, typename Owner>
class VXCORE_API InterfacePtr {
  public:
    /// Null, with a default owner.
    InterfacePtr() = default;

    /// @param object  Lives at least as long as `owner` or a copy of it.
    InterfacePtr(I * object, Owner owner) : m_owner(std::move(owner)), m_object(object) {}

    /// The interface, or null. It dangles when the last owner is gone.
    I * get() const noexcept { return m_object; }

    /// @pre The pointer is not null.
    I & operator*() const noexcept { return *m_object; }

    I * operator->() const noexcept { return m_object; }

    /// True if the pointer is not null, whatever the owner.
    explicit operator bool() const noexcept { return m_object != nullptr; }

    /// What keeps the object alive. A copy of it does so beyond this pointer.
    Owner const & owner() const noexcept VXCORE_LIFETIMEBOUND { return m_owner; }

  private:
    Owner m_owner{};
    I * m_object = nullptr;
};

} // namespace vxcore
