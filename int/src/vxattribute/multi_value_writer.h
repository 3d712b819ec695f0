#pragma once

#include "vxattribute/attribute_value.h"

namespace vxattribute {

namespace impl {

/// Builds the elements of one value in place.
///
/// It refers to the value, which must outlive it and must not be changed or copied by other means
/// meanwhile: the writer writes in place and does not check again whether the value is shared.
/// There is nothing to finish; the value has the elements as they are added.
///
/// Cost. The first element uses the storage of lone elements; the second moves the value to its
/// shared form, with one allocation for the object and one for a block. The block then doubles when
/// it is full. Call `reserve` when the number of elements is known. If all elements are known in
/// advance, `make_list` is cheaper.
///
/// Threads. Belongs to the thread that may write the value.
///
/// Errors. Arguments may be elements of the value itself. All operations raise std::bad_alloc and
/// what copying an element raises; the value then keeps its elements. Pointers and references to
/// elements are invalid after any operation.
///
///     auto writer = value.multivalue_writer<double>();
///     writer.push_back(1.5);
///     writer.push_back(2.5);
template <typename T>
class MultiValueWriter {
  public:
    /// What `push_back` takes: `T`, or a (data, size) pair for texts, made from any text.
    using Arg = ElementArg<T>;

    /// As AttributeValue::multivalue_writer, which is the way to make one. Makes the value
    /// unshared, with a copy of its elements if it was shared; elements that it has are kept.
    ///
    /// @raises error.vxattribute.value.type.mismatch: the value is of another type and not null.
    explicit MultiValueWriter(AttributeValue & value) : m_holder(&value.m_holder) {
        if (value.type() == ValueTypeTraits<T>::type()) {
            (*m_holder)->prepare_write(*m_holder);
            return;
        }
        if (!value.is_null()) {
            value.raise_type_error(ValueTypeTraits<T>::type());
        }
        // Both steps may raise. They work on a second holder, so that a failure leaves the value
        // null.
        ValueHolder empty(ValueFactory<T>::create_value());
        empty->prepare_write(empty);
        m_holder->swap(empty);
    }

    /// Appends a copy of `x`.
    ///
    /// @raises std::length_error: the value has 2^32 - 1 elements already.
    void push_back(Arg const & x) {
        if (target().end() - target().begin() != 1) {
            target().push_back(x);
        } else {
            append_second(x);
        }
    }

    /// Makes room for `n` elements in total. Up to that number, `push_back` allocates nothing for
    /// the block. A smaller number changes nothing.
    void reserve(unsigned int n) {
        if (n > 1) {
            (*m_holder)->promote_to_multivalue(*m_holder);
        }
        target().reserve(n);
    }

    /// Replaces the elements by copies of [first, last), which may lie in the value. An empty range
    /// makes the value empty.
    ///
    /// @raises std::length_error: more than 2^32 - 1 elements.
    void assign(T const * first, T const * last) {
        if (last - first > 1) {
            // A range of two or more cannot be part of the lone object that this replaces.
            (*m_holder)->promote_to_multivalue(*m_holder);
        }
        target().assign(first, last);
    }

  private:
    /// The object in the holder, which every promotion may replace.
    TypedValue<T> & target() noexcept { return static_cast<TypedValue<T> &>(*m_holder->get()); }

    /// Appends to a lone element: the value becomes a multi-value first.
    void append_second(Arg const & x) {
        if constexpr (std::is_same_v<Arg, T>) {
            // `x` may be the one element, which the promotion copies to another object.
            bool const isOwn = &x == target().begin();
            (*m_holder)->promote_to_multivalue(*m_holder);
            target().push_back(isOwn ? *target().begin() : x);
        } else {
            (*m_holder)->promote_to_multivalue(*m_holder);
            target().push_back(x);
        }
    }

    ValueHolder * m_holder;
};

} // namespace impl

// Declared in attribute_value.h. Defined here, so that values can be used without this class.
template <impl::ElementType T>
impl::MultiValueWriter<T> AttributeValue::multivalue_writer() {
    return impl::MultiValueWriter<T>(*this);
}

} // namespace vxattribute
