#pragma once

/// How TypedValue changes its elements. In a header of its own because every function here has the
/// strong guarantee and accepts arguments that lie in the value itself.

#include "vxattribute/value/typed_value_storage_internal.h"

#include <type_traits>

namespace vxattribute::impl {

/// Appends the element that `construct` builds at the given address. It is called before the old
/// elements move, because it may read one of them.
template <typename T>
template <typename Construct>
void TypedValue<T>::append(Construct construct) {
    T * const limit = is_inline() ? &m_slot.element + 1 : m_slot.capacityEnd;
    if (m_end != limit) {
        construct(m_end);
        ++m_end;
        return;
    }
    unsigned int const capacity = grown_capacity(1);
    T * const block = allocate(capacity);
    T * const fresh = block + count();
    try {
        construct(fresh);
    } catch (...) {
        free_block(block, capacity);
        throw;
    }
    try {
        Traits::move_construct_range(m_begin, m_end, block);
    } catch (...) {
        std::destroy_at(fresh);
        free_block(block, capacity);
        throw;
    }
    adopt_block(block, fresh + 1, capacity);
}

template <typename T>
void TypedValue<T>::push_back(Arg const & x) {
    append([&x](T * place) { Traits::construct_value(place, x); });
}

template <typename T>
T & TypedValue<T>::push_back_default() {
    append([](T * place) { ::new (static_cast<void *>(place)) T(); });
    return m_end[-1];
}

template <typename T>
void TypedValue<T>::assign(T const * first, T const * last) {
    if (static_cast<std::size_t>(last - first) > std::numeric_limits<unsigned int>::max()) {
        throw std::length_error("vxattribute::TypedValue<>: too many elements");
    }
    auto const n = static_cast<unsigned int>(last - first);
    // In place only where no copy can raise: a failure halfway would leave a mixture.
    if (n > capacity() || !std::is_nothrow_copy_constructible_v<T>) {
        replace_elements(first, n);
        return;
    }
    // Forward order: a range within this value is read before it is overwritten.
    T * const tail = m_begin + std::min(n, count());
    std::copy(first, first + (tail - m_begin), m_begin);
    if (n < count()) {
        m_end = Traits::erase_range(tail, m_end, m_end);
        shrink();
    } else {
        m_end = std::uninitialized_copy(first + (tail - m_begin), last, m_end);
    }
}

/// Replaces the elements by copies that are built elsewhere first, so that a failure changes
/// nothing.
template <typename T>
void TypedValue<T>::replace_elements(T const * first, unsigned int n) {
    if (n <= 1) {
        // At most one element is stored inside the object. It is copied to the stack first, because
        // `first` may point to an element that `clear_in_place` destroys.
        Slot aside;
        T * const end = std::uninitialized_copy(first, first + n, &aside.element);
        clear_in_place();
        m_end = Traits::move_construct_range(&aside.element, end, m_begin);
        return;
    }
    unsigned int const capacity =
        n > this->capacity() ? grown_capacity(n - this->capacity()) : this->capacity();
    T * const block = allocate(capacity);
    T * end;
    try {
        end = std::uninitialized_copy(first, first + n, block);
    } catch (...) {
        free_block(block, capacity);
        throw;
    }
    std::destroy(m_begin, m_end);
    adopt_block(block, end, capacity);
}

template <typename T>
void TypedValue<T>::set_single_in_place(Arg const & value) {
    if (m_begin == m_end) {
        Traits::construct_value(m_begin, value);
        ++m_end;
        return;
    }
    Traits::assign_value(m_begin, value);
    if (count() > 1) {
        m_end = Traits::erase_range(m_begin + 1, m_end, m_end);
        shrink();
    }
}

template <typename T>
void TypedValue<T>::clear_in_place() noexcept {
    m_end = Traits::erase_range(m_begin, m_end, m_end);
    shrink();
}

} // namespace vxattribute::impl
