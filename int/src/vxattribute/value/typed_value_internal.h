#pragma once

/// The out-of-line members of the representation templates, for the sources that instantiate them.

#include "vxattribute/value/block_cache_internal.h"
#include "vxattribute/value/value_singletons_internal.h"
#include "vxcore/hash.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <stdexcept>
#include <type_traits>

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
        free_block(m_begin);
    }
}

// Storage

template <typename T>
T * TypedValue<T>::allocate(unsigned int capacity) {
    return std::allocator<T>().allocate(capacity);
}

template <typename T>
void TypedValue<T>::free_block(T * block) noexcept {
    ::operator delete(block);
}

template <typename T>
unsigned int TypedValue<T>::capacity() const noexcept {
    return is_inline() ? 1 : static_cast<unsigned int>(m_slot.capacityEnd - m_begin);
}

/// The capacity after growing by `extra`: at least twice the present one.
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

/// Lets the elements [block, end) be those of this value. The old ones must be gone.
template <typename T>
void TypedValue<T>::adopt_block(T * block, T * end, unsigned int capacity) noexcept {
    if (!is_inline()) {
        free_block(m_begin);
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
        free_block(block);
        throw;
    }
    adopt_block(block, end, capacity);
}

/// Brings the last element back into the object after an erase that left at most one.
template <typename T>
void TypedValue<T>::shrink() noexcept {
    if (is_inline() || count() > 1) {
        return;
    }
    T * const block = m_begin;
    // The slot is written next, and with it the end of the block that the union holds.
    m_end = Traits::move_construct_range(block, m_end, &m_slot.element);
    m_begin = &m_slot.element;
    free_block(block);
}

template <typename T>
void TypedValue<T>::reserve(unsigned int n) {
    if (n > capacity()) {
        grow(n - capacity());
    }
}

/// Appends what `construct` builds at the address it is given. It runs before the old elements
/// move, since it may read from one of them.
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
        free_block(block);
        throw;
    }
    try {
        Traits::move_construct_range(m_begin, m_end, block);
    } catch (...) {
        std::destroy_at(fresh);
        free_block(block);
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
    if (n > capacity() || !std::is_nothrow_copy_constructible_v<T>) {
        replace_elements(first, n);
        return;
    }
    // Forward order: where the range lies in this value, each element is read before it is written.
    T * const tail = m_begin + std::min(n, count());
    std::copy(first, first + (tail - m_begin), m_begin);
    if (n < count()) {
        m_end = Traits::erase_range(tail, m_end, m_end);
        shrink();
    } else {
        m_end = std::uninitialized_copy(first + (tail - m_begin), last, m_end);
    }
}

/// Replaces the elements by copies that are built aside, so that a failure changes nothing.
template <typename T>
void TypedValue<T>::replace_elements(T const * first, unsigned int n) {
    if (n <= 1) {
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
        free_block(block);
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

// Reading

template <typename T>
ValueBase * TypedValue<T>::subrange(unsigned int pos) const {
    if (pos == 0) {
        return this->clone();
    }
    if (pos > count()) {
        throw_subrange_range_error();
    }
    return ValueFactory<T>::create_value(m_begin + pos, m_end);
}

template <typename T>
ValueBase * TypedValue<T>::subrange(unsigned int pos, unsigned int n) const {
    if (pos > count() || n > count() - pos) {
        throw_subrange_range_error();
    }
    if (pos == 0 && n == count()) {
        return this->clone();
    }
    return ValueFactory<T>::create_value(m_begin + pos, m_begin + pos + n);
}

template <typename T>
bool TypedValue<T>::equal(ValueBase const & other) const {
    if (!(this->type() == other.type())) {
        return false;
    }
    auto const & typed = static_cast<TypedValue const &>(other);
    if (count() != typed.count()) {
        return false;
    }
    T const * b = typed.m_begin;
    for (T const * a = m_begin; a != m_end; ++a, ++b) {
        if (!Traits::equal(*a, *b)) {
            return false;
        }
    }
    return true;
}

template <typename T>
int TypedValue<T>::compare(ValueBase const & other) const {
    if (!(this->type() == other.type())) {
        return this->type().compare(other.type());
    }
    auto const & typed = static_cast<TypedValue const &>(other);
    T const * a = m_begin;
    T const * b = typed.m_begin;
    for (; a != m_end && b != typed.m_end; ++a, ++b) {
        if (int const order = Traits::compare(*a, *b); order != 0) {
            return order;
        }
    }
    return int{a != m_end} - int{b != typed.m_end};
}

template <typename T>
bool TypedValue<T>::empty() const noexcept {
    return m_begin == m_end;
}

template <typename T>
unsigned int TypedValue<T>::size() const noexcept {
    return count();
}

template <typename T>
unsigned int TypedValue<T>::hash() const {
    unsigned int h = 0;
    for (T const * p = m_begin; p != m_end; ++p) {
        h = vxcore::hash_fold(h, Traits::hash(*p));
    }
    return h;
}

template <typename T>
void TypedValue<T>::write_trace(std::ostream & stream, TraceFormatter const & formatter,
                                unsigned int indent) const {
    Traits::write_trace(stream, formatter, indent, m_begin, m_end);
}

// SingleValueImpl

template <typename T>
SingleValueImpl<T>::SingleValueImpl(Arg const & x) {
    this->set_single_in_place(x);
}

template <typename T>
void SingleValueImpl<T>::release() const noexcept {
    delete this;
}

template <typename T>
ValueBase * SingleValueImpl<T>::clone() const {
    if constexpr (has_singletons<T>) {
        return ValueFactory<T>::create_value(*this);
    } else {
        return this->empty() ? new SingleValueImpl : new SingleValueImpl(*this->begin());
    }
}

template <typename T>
void SingleValueImpl<T>::prepare_write(ValueHolder &) {}

template <typename T>
void SingleValueImpl<T>::promote_to_multivalue(ValueHolder & holder) {
    holder.attach(new RefCountedValueImpl<T>(this->begin(), this->end()));
}

template <typename T>
void SingleValueImpl<T>::clear(ValueHolder &) {
    this->clear_in_place();
}

template <typename T>
void SingleValueImpl<T>::set_single(ValueHolder &, Arg const & value) {
    this->set_single_in_place(value);
}

// RefCountedValueImpl

template <typename T>
RefCountedValueImpl<T>::RefCountedValueImpl(Arg const & x) {
    this->set_single_in_place(x);
}

template <typename T>
RefCountedValueImpl<T>::RefCountedValueImpl(T const * first, T const * last) {
    this->assign(first, last);
}

template <typename T>
void RefCountedValueImpl<T>::release() const noexcept {
    if (m_count.decrement()) {
        delete this;
    }
}

template <typename T>
ValueBase * RefCountedValueImpl<T>::clone() const {
    m_count.increment();
    return const_cast<RefCountedValueImpl *>(this);
}

template <typename T>
void RefCountedValueImpl<T>::prepare_write(ValueHolder & holder) {
    if (!m_count.is_unique()) {
        holder.attach(new RefCountedValueImpl(this->begin(), this->end()));
    }
}

template <typename T>
void RefCountedValueImpl<T>::promote_to_multivalue(ValueHolder &) {}

template <typename T>
void RefCountedValueImpl<T>::clear(ValueHolder & holder) {
    if (m_count.is_unique()) {
        this->clear_in_place();
    } else {
        holder.attach(ValueFactory<T>::create_value());
    }
}

template <typename T>
void RefCountedValueImpl<T>::set_single(ValueHolder & holder, Arg const & value) {
    if (m_count.is_unique()) {
        this->set_single_in_place(value);
    } else {
        holder.attach(ValueFactory<T>::create_value(value));
    }
}

// Singletons

template <typename T>
void SingletonBase<T>::prepare_write(ValueHolder & holder) {
    holder.attach(this->empty() ? new SingleValueImpl<T> : new SingleValueImpl<T>(*this->begin()));
}

template <typename T>
void SingletonBase<T>::promote_to_multivalue(ValueHolder & holder) {
    holder.attach(new RefCountedValueImpl<T>(this->begin(), this->end()));
}

// ValueFactory

template <typename T>
TypedValue<T> * ValueFactory<T>::create_value() {
    if constexpr (has_singletons<T>) {
        return Singletons<T>::empty();
    } else if constexpr (std::is_same_v<T, std::string>) {
        return static_cast<TypedValue<T> *>(ValueFactory::sm_defaultConstructed->clone());
    } else if constexpr (has_single_value_impl<T>) {
        return new SingleValueImpl<T>;
    } else {
        return new RefCountedValueImpl<T>;
    }
}

template <typename T>
TypedValue<T> * ValueFactory<T>::create_value(ElementArg<T> const & x) {
    if constexpr (has_singletons<T>) {
        if (TypedValue<T> * const known = Singletons<T>::find(x)) {
            return known;
        }
    }
    if constexpr (std::is_same_v<T, std::string>) {
        if (x.size == 0) {
            return static_cast<TypedValue<T> *>(ValueFactory::sm_emptyString->clone());
        }
    }
    if constexpr (has_single_value_impl<T>) {
        return new SingleValueImpl<T>(x);
    } else {
        return new RefCountedValueImpl<T>(x);
    }
}

template <typename T>
TypedValue<T> * ValueFactory<T>::create_value(T const * first, T const * last) {
    bool const sharesAlone = !has_single_value_impl<T> && !std::is_same_v<T, std::string>;
    if (!sharesAlone && last - first <= 1) {
        return first == last ? create_value()
                             : create_value(static_cast<ElementArg<T> const &>(*first));
    }
    return new RefCountedValueImpl<T>(first, last);
}

/// Instantiates all that an element type needs, in one source file each.
#define VXATTRIBUTE_INSTANTIATE_ELEMENT(T)                                                         \
    template class vxattribute::impl::TypedValue<T>;                                               \
    template class vxattribute::impl::RefCountedValueImpl<T>;                                      \
    template struct vxattribute::impl::ValueFactory<T>

/// The same for a type whose lone element has an unshared form.
#define VXATTRIBUTE_INSTANTIATE_SINGLE_ELEMENT(T)                                                  \
    VXATTRIBUTE_INSTANTIATE_ELEMENT(T);                                                            \
    template class vxattribute::impl::SingleValueImpl<T>

} // namespace vxattribute::impl
