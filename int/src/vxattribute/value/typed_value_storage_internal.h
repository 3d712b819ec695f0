#pragma once

/// How TypedValue manages memory: the inline slot, blocks from the heap, and moves between them. In
/// a header of its own because the invariants of the storage depend on these functions alone.

#include "vxattribute/attribute_value_impl.h"
#include "vxattribute/value/block_cache_internal.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <stdexcept>

namespace vxattribute::impl {

template <typename T>
void * TypedValue<T>::operator new(std::size_t size) {
    return BlockCache::allocate(size);
}

template <typename T>
void TypedValue<T>::operator delete(void * object, std::size_t size) noexcept {
    BlockCache::free(object, size);
}

template <typename T>
TypedValue<T>::~TypedValue() {
    std::destroy(m_begin, m_end);
    if (!is_inline()) {
        free_block(m_begin, capacity());
    }
}

template <typename T>
T * TypedValue<T>::allocate(unsigned int capacity) {
    static_assert(alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);
    if (capacity > std::numeric_limits<std::size_t>::max() / sizeof(T)) {
        throw std::bad_array_new_length();
    }
    return static_cast<T *>(BlockCache::allocate_any(capacity * sizeof(T)));
}

template <typename T>
void TypedValue<T>::free_block(T * block, unsigned int capacity) noexcept {
    BlockCache::free_any(block, capacity * sizeof(T));
}

template <typename T>
unsigned int TypedValue<T>::capacity() const noexcept {
    return is_inline() ? 1 : static_cast<unsigned int>(m_slot.capacityEnd - m_begin);
}

/// The capacity after growing by `extra`: at least twice the present one, so that appending costs
/// constant time on average.
template <typename T>
unsigned int TypedValue<T>::grown_capacity(unsigned int extra) const {
    std::uint64_t const present = capacity();
    std::uint64_t const wanted = present + extra;
    std::uint64_t const limit = std::numeric_limits<unsigned int>::max();
    if (wanted > limit) {
        throw std::length_error("vxattribute::TypedValue<>: too many elements");
    }
    return static_cast<unsigned int>(std::min(std::max(2 * present, wanted), limit));
}

/// Makes [block, end) the elements of this value. The old elements must be destroyed already.
template <typename T>
void TypedValue<T>::adopt_block(T * block, T * end, unsigned int capacity) noexcept {
    if (!is_inline()) {
        free_block(m_begin, this->capacity());
    }
    m_begin = block;
    m_end = end;
    m_slot.capacityEnd = block + capacity;
}

template <typename T>
void TypedValue<T>::grow(unsigned int extra) {
    unsigned int const capacity = grown_capacity(extra);
    T * const block = allocate(capacity);
    T * end;
    try {
        end = Traits::move_construct_range(m_begin, m_end, block);
    } catch (...) {
        m_end = m_begin;
        free_block(block, capacity);
        throw;
    }
    adopt_block(block, end, capacity);
}

/// Moves the last element back into the object after an erase that left at most one.
template <typename T>
void TypedValue<T>::shrink() noexcept {
    if (is_inline() || count() > 1) {
        return;
    }
    T * const block = m_begin;
    unsigned int const present = capacity();
    // This overwrites `m_slot.capacityEnd`: the union now holds the element.
    m_end = Traits::move_construct_range(block, m_end, &m_slot.element);
    m_begin = &m_slot.element;
    free_block(block, present);
}

template <typename T>
void TypedValue<T>::reserve(unsigned int n) {
    if (n > capacity()) {
        grow(n - capacity());
    }
}

} // namespace vxattribute::impl
