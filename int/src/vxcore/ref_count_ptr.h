#pragma once

#include "vxcore/ref_count.h"

#include <compare>
#include <concepts>
#include <cstddef>
#include <utility>

namespace vxcore {

/// Owning pointer to an object derived from `RefCounted`. One pointer wide; a copy is one count.
///
/// The conversions from a raw pointer and to `bool` are explicit: with implicit ones a
/// `RefCountPtr` would silently become a number wherever a `bool` is accepted.
///
/// Exported, since templates over it are instantiated in one library and used in others.
template <typename T>
class VXCORE_API RefCountPtr {
  public:
    constexpr RefCountPtr() noexcept = default;

    constexpr RefCountPtr(std::nullptr_t) noexcept {}

    /// Adds a reference to `*object`; null is allowed.
    explicit RefCountPtr(T * object) noexcept : m_object(object) { acquire(); }

    RefCountPtr(RefCountPtr const & other) noexcept : m_object(other.m_object) { acquire(); }

    RefCountPtr(RefCountPtr && other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}

    template <typename U>
    requires std::convertible_to<U *, T *> RefCountPtr(RefCountPtr<U> const & other)
    noexcept : m_object(other.get()) { acquire(); }

    template <typename U>
    requires std::convertible_to<U *, T *> RefCountPtr(RefCountPtr<U> && other)
    noexcept : m_object(other.detach()) {}

    ~RefCountPtr() { release(m_object); }

    RefCountPtr & operator=(RefCountPtr const & other) noexcept {
        RefCountPtr(other).swap(*this);
        return *this;
    }

    RefCountPtr & operator=(RefCountPtr && other) noexcept {
        RefCountPtr(std::move(other)).swap(*this);
        return *this;
    }

    T * get() const noexcept { return m_object; }

    T & operator*() const noexcept { return *m_object; }

    T * operator->() const noexcept { return m_object; }

    explicit operator bool() const noexcept { return m_object != nullptr; }

    void swap(RefCountPtr & other) noexcept { std::swap(m_object, other.m_object); }

    /// Drops the reference; the pointer is null afterwards.
    void reset() noexcept { release(std::exchange(m_object, nullptr)); }

    /// Returns the object and passes its reference to the caller; the pointer is null afterwards.
    [[nodiscard]] T * detach() noexcept { return std::exchange(m_object, nullptr); }

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
template <typename T, typename... Args>
[[nodiscard]] RefCountPtr<T> make_ref_counted(Args &&... args) {
    return RefCountPtr<T>(new T(std::forward<Args>(args)...));
}

/// A pointer to an interface together with an owner that keeps the object alive.
///
/// An interface has a protected destructor, so that ownership is separate. An empty `owner` is for
/// objects that need none, such as statics.
template <typename I, typename Owner>
class VXCORE_API InterfacePtr {
  public:
    InterfacePtr() = default;

    InterfacePtr(I * object, Owner owner) : m_owner(std::move(owner)), m_object(object) {}

    I * get() const noexcept { return m_object; }

    I & operator*() const noexcept { return *m_object; }

    I * operator->() const noexcept { return m_object; }

    explicit operator bool() const noexcept { return m_object != nullptr; }

    Owner const & owner() const noexcept VXCORE_LIFETIMEBOUND { return m_owner; }

  private:
    Owner m_owner{};
    I * m_object = nullptr;
};

} // namespace vxcore
