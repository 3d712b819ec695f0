#pragma once

/// The interface of stored values and the owner of one. Include "vxattribute/attribute_value.h"
/// instead: inline code of callers needs this header, so it is installed.

#include "vxattribute/value_type_traits.h"

#include <utility>

namespace vxattribute::impl {

/// A run of elements of one type: the interface of every representation.
///
/// The destructor is protected: call `release()` to give a value up. An operation that takes a
/// holder must be called on the object in that holder. It may replace the object, so do not use the
/// object after the call. When it raises, the holder keeps the object it had.
///
/// Threads. Holders in several threads may refer to one object. The const functions, `clone` and
/// `release` among them, may then run at the same time; the others see that the object is shared
/// and replace it.
class VXATTRIBUTE_API ValueBase {
  public:
    /// The type of the elements, a constant of ValueTypeId. Not a virtual call: types are compared
    /// on every typed access.
    ValueTypeId const & type() const noexcept { return *m_type; }

    /// Gives up one reference, and destroys the object with the last one.
    virtual void release() const noexcept = 0;
    /// Another reference to this object, or a copy. The caller owns the result. A reference raises
    /// nothing; a copy raises std::bad_alloc or what copying the element raises.
    virtual ValueBase * clone() const = 0;
    /// Makes the holder's object unshared, so that it may be written. A shared or static object is
    /// replaced by a copy of its elements; an unshared one stays. O(size()) at worst.
    virtual void prepare_write(ValueHolder & holder) = 0;
    /// Makes the holder's object one that can take several elements, and keeps its elements. One
    /// allocation, with a copy of the element, unless the object is such a one already. Does not
    /// make the object unshared.
    virtual void promote_to_multivalue(ValueHolder & holder) = 0;
    /// The operations of AttributeValue with the same names. The caller owns a subrange, which
    /// raises std::out_of_range when it is not within the elements. `clear` keeps the type;
    /// `compare` orders values of different types by their numbers; `write_trace` raises what the
    /// stream raises.
    virtual ValueBase * subrange(unsigned int pos) const = 0;
    virtual ValueBase * subrange(unsigned int pos, unsigned int count) const = 0;
    virtual void clear(ValueHolder & holder) = 0;
    virtual bool equal(ValueBase const & other) const = 0;
    virtual int compare(ValueBase const & other) const = 0;
    virtual bool empty() const noexcept = 0;
    virtual unsigned int size() const noexcept = 0;
    virtual unsigned int hash() const = 0;
    virtual void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                             unsigned int indent) const = 0;

  protected:
    /// @param type  A constant of ValueTypeId, which is not copied.
    explicit constexpr ValueBase(ValueTypeId const * type) noexcept : m_type(type) {}

    ValueBase(ValueBase const &) noexcept = default;
    ~ValueBase() = default;

    /// Raise the std::out_of_range of `at` and `subrange`.
    [[noreturn]] static void throw_at_range_error();
    [[noreturn]] static void throw_subrange_range_error();

  private:
    ValueTypeId const * m_type;
};

template <typename T>
class TypedValue;

/// The null value: one object in the library's constant data, usable before any load-time code has
/// run. No operation changes, counts or replaces it. It is empty, its hash is 0, its only subrange
/// is (0, 0), and it equals only itself.
template <>
class VXATTRIBUTE_API TypedValue<NullValueType> : public ValueBase {
  public:
    static TypedValue sm_instance;

    /// The object. No count is touched, and releasing it does nothing.
    static TypedValue * instance() noexcept { return &sm_instance; }

    // As in ValueBase.
    void release() const noexcept override;
    ValueBase * clone() const override;
    void prepare_write(ValueHolder & holder) override;
    void promote_to_multivalue(ValueHolder & holder) override;
    ValueBase * subrange(unsigned int pos) const override;
    ValueBase * subrange(unsigned int pos, unsigned int count) const override;
    void clear(ValueHolder & holder) override;
    bool equal(ValueBase const & other) const override;
    int compare(ValueBase const & other) const override;
    bool empty() const noexcept override;
    unsigned int size() const noexcept override;
    unsigned int hash() const override;
    void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                     unsigned int indent) const override;

  protected:
    constexpr TypedValue() noexcept : ValueBase(&ValueTypeId::typeNull) {}

    ~TypedValue() = default;
};

/// Owns one value. It is never empty: by default it holds the null value, which costs nothing.
///
/// A holder is not copied: attach a `clone()` instead. Nothing here raises or allocates. One holder
/// belongs to one thread at a time.
class ValueHolder {
  public:
    /// Holds null.
    constexpr ValueHolder() noexcept : m_value(&TypedValue<NullValueType>::sm_instance) {}

    /// Adopts `value`, which is not null, without touching a count.
    explicit constexpr ValueHolder(ValueBase * value) noexcept : m_value(value) {}

    /// Takes the value over and leaves null in `other`. Assignment releases the previous value
    /// last, so `other` may be inside it.
    ValueHolder(ValueHolder && other) noexcept : m_value(other.detach()) {}

    ValueHolder & operator=(ValueHolder && other) noexcept {
        ValueHolder(std::move(other)).swap(*this);
        return *this;
    }

    /// Releases the value; null needs no call. Where a value was moved from, compilers know its
    /// address and leave the destructor out.
    ~ValueHolder() {
        if (m_value != &TypedValue<NullValueType>::sm_instance) {
            m_value->release();
        }
    }

    /// Adopts `value`, then releases the previous value.
    void attach(ValueBase * value) noexcept { std::exchange(m_value, value)->release(); }

    /// Passes the object to the caller, and holds null afterwards.
    [[nodiscard]] ValueBase * detach() noexcept {
        return std::exchange(m_value, &TypedValue<NullValueType>::sm_instance);
    }

    /// The value, still owned by the holder. Never null; valid until the holder changes.
    ValueBase * get() noexcept { return m_value; }

    ValueBase const * get() const noexcept { return m_value; }

    ValueBase * operator->() noexcept { return m_value; }

    ValueBase const * operator->() const noexcept { return m_value; }

    /// Exchanges two pointers.
    void swap(ValueHolder & other) noexcept { std::swap(m_value, other.m_value); }

  private:
    ValueBase * m_value;
};

} // namespace vxattribute::impl
