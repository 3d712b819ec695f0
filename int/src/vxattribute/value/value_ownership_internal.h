#pragma once

/// Who owns an element: the unshared, the counted and the static form, and the factory that chooses
/// among them. In one header because the forms create each other.

#include "vxattribute/value/value_singletons_internal.h"

#include <type_traits>

namespace vxattribute::impl {

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
        // Through the factory: after a write the value may equal one of the static ones.
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
    // A shared value is not copied first, since all its elements are replaced.
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
    // No or one element may have a static or an unshared form, which the overloads above choose.
    // The types that `sharesAlone` selects have neither form.
    bool const sharesAlone = !has_single_value_impl<T> && !std::is_same_v<T, std::string>;
    if (!sharesAlone && last - first <= 1) {
        return first == last ? create_value()
                             : create_value(static_cast<ElementArg<T> const &>(*first));
    }
    return new RefCountedValueImpl<T>(first, last);
}

} // namespace vxattribute::impl
