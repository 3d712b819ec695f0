#pragma once

/// How TypedValue compares, hashes, renders and cuts out elements. In a header of its own because
/// none of it depends on where the elements are stored.

#include "vxattribute/attribute_value_impl.h"
#include "vxcore/hash.h"

namespace vxattribute::impl {

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

} // namespace vxattribute::impl
