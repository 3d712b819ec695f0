#pragma once

/// What stands behind an AttributeValue. Include "vxattribute/attribute_value.h" instead; this
/// header is installed because inline code of callers reads through it.

#include "vxattribute/value_type_traits.h"
#include "vxcore/ref_count.h"

namespace vxattribute::impl {

/// Raises the standard out-of-range exceptions and the two errors of cardinality.
[[noreturn]] VXATTRIBUTE_API void throw_array_empty_error();
[[noreturn]] VXATTRIBUTE_API void throw_get_on_multi_value_attribute();

/// A run of elements of one type, whoever owns them.
///
/// Not destroyed through this class: a value is given up by `release()`. The operations that take a
/// holder are called on the object which that holder holds and may replace it; the object must not
/// be touched after the call.
class VXATTRIBUTE_API ValueBase {
  public:
    ValueTypeId const & type() const noexcept { return *m_type; }

    virtual void release() const noexcept = 0;
    virtual ValueBase * clone() const = 0;
    /// Makes the holder's object private, so that it may be written.
    virtual void prepare_write(ValueHolder & holder) = 0;
    /// Makes the holder's object one that can take several elements; its elements stay.
    virtual void promote_to_multivalue(ValueHolder & holder) = 0;
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
    explicit constexpr ValueBase(ValueTypeId const * type) noexcept : m_type(type) {}

    ValueBase(ValueBase const &) noexcept = default;
    ~ValueBase() = default;

    [[noreturn]] static void throw_at_range_error();
    [[noreturn]] static void throw_subrange_range_error();

  private:
    ValueTypeId const * m_type;
};

template <typename T>
class TypedValue;

/// The null value: one object, part of the library's constant data.
template <>
class VXATTRIBUTE_API TypedValue<NullValueType> : public ValueBase {
  public:
    static TypedValue sm_instance;

    static TypedValue * instance() noexcept { return &sm_instance; }

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

/// Owns one value; never empty: with nothing in it, it holds the null value.
class ValueHolder {
  public:
    constexpr ValueHolder() noexcept : m_value(&TypedValue<NullValueType>::sm_instance) {}

    /// Adopts `value` without touching a count.
    explicit constexpr ValueHolder(ValueBase * value) noexcept : m_value(value) {}

    ValueHolder(ValueHolder && other) noexcept : m_value(other.detach()) {}

    ValueHolder & operator=(ValueHolder && other) noexcept {
        ValueHolder(std::move(other)).swap(*this);
        return *this;
    }

    ~ValueHolder() { m_value->release(); }

    /// Adopts `value`, then releases what was held before.
    void attach(ValueBase * value) noexcept { ValueHolder(value).swap(*this); }

    /// Gives the object to the caller and holds null from then on.
    [[nodiscard]] ValueBase * detach() noexcept {
        return std::exchange(m_value, &TypedValue<NullValueType>::sm_instance);
    }

    ValueBase * get() noexcept { return m_value; }

    ValueBase const * get() const noexcept { return m_value; }

    ValueBase * operator->() noexcept { return m_value; }

    ValueBase const * operator->() const noexcept { return m_value; }

    void swap(ValueHolder & other) noexcept { std::swap(m_value, other.m_value); }

  private:
    ValueBase * m_value;
};

/// How an element comes in: texts as a (data, size) pair, all else by reference.
template <typename T>
struct ElementArgument {
    using Type = T;
};

template <>
struct ElementArgument<std::string> {
    using Type = ValueTypeTraits<std::string>::AssignArg;
};

template <typename T>
using ElementArg = typename ElementArgument<T>::Type;

/// Types with an unshared form for a lone element. The others are shared by count even then, since
/// copying them is dear.
template <typename T>
inline constexpr bool has_single_value_impl = true;
template <>
inline constexpr bool has_single_value_impl<std::string> = false;
template <>
inline constexpr bool has_single_value_impl<BinaryValue> = false;
template <>
inline constexpr bool has_single_value_impl<SerializedValue> = false;
template <>
inline constexpr bool has_single_value_impl<SecuredValue> = false;

/// Types whose common values are static objects.
template <typename T>
inline constexpr bool has_singletons = false;
template <>
inline constexpr bool has_singletons<bool> = true;
template <>
inline constexpr bool has_singletons<long long> = true;

/// A run of elements in memory. At most one element lives inside the object itself (the inline
/// slot); two or more live in a block from the heap.
///
/// Invariants: 1. begin <= end. 2. While `m_begin` points at the inline slot, the union holds the
/// element, else the end of the block. 3. Two or more elements are always in a block.
///
/// The storage operations check nothing and are for an object that may be written: one that was
/// just made, or one behind `prepare_write`. When they raise, the elements are as they were.
template <typename T>
class VXATTRIBUTE_API TypedValue : public ValueBase {
  public:
    using Traits = ValueTypeTraits<T>;
    using Arg = ElementArg<T>;

    T const * begin() const noexcept { return m_begin; }

    T const * end() const noexcept { return m_end; }

    T const & at(unsigned int index) const {
        if (index >= count()) {
            throw_at_range_error();
        }
        return m_begin[index];
    }

    /// The one element, or the type's default when there is none.
    T const & get() const {
        if (m_end - m_begin == 1) [[likely]] {
            return *m_begin;
        }
        if (m_end != m_begin) {
            throw_get_on_multi_value_attribute();
        }
        return Traits::default_value();
    }

    T const & front() const {
        if (m_begin == m_end) {
            throw_array_empty_error();
        }
        return *m_begin;
    }

    /// Makes room for `n` elements in all.
    void reserve(unsigned int n);
    /// Appends a copy of `x`, which may be an element of this value.
    void push_back(Arg const & x);
    /// Replaces the elements by copies of [first, last), which may lie in this value.
    void assign(T const * first, T const * last);
    /// Appends a default element and gives it, for a reader to fill.
    T & push_back_default();

    ValueBase * subrange(unsigned int pos) const override;
    ValueBase * subrange(unsigned int pos, unsigned int count) const override;
    bool equal(ValueBase const & other) const override;
    int compare(ValueBase const & other) const override;
    bool empty() const noexcept override;
    unsigned int size() const noexcept override;
    unsigned int hash() const override;
    void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                     unsigned int indent) const override;

    virtual ~TypedValue();
    /// Makes the holder's value one of the single element `value`.
    virtual void set_single(ValueHolder & holder, Arg const & value) = 0;

    static void * operator new(std::size_t size);
    static void operator delete(void * object, std::size_t size) noexcept;

  protected:
    constexpr TypedValue() noexcept : ValueBase(&Traits::type()), m_begin(nullptr), m_end(nullptr) {
        m_begin = m_end = &m_slot.element;
    }

    /// A static of one plain element.
    constexpr explicit TypedValue(T x) noexcept requires has_singletons<T>
        : ValueBase(&Traits::type()), m_begin(nullptr), m_end(nullptr), m_slot(x) {
        m_begin = &m_slot.element;
        m_end = m_begin + 1;
    }

    TypedValue(TypedValue const &) = delete;
    TypedValue & operator=(TypedValue const &) = delete;

    /// `set_single` in place: assigns before it erases, since `value` may be one of the erased.
    void set_single_in_place(Arg const & value);
    void clear_in_place() noexcept;

  private:
    union Slot {
        constexpr Slot() noexcept : capacityEnd(nullptr) {}

        template <typename U>
        constexpr explicit Slot(U x) noexcept : element(x) {}

        ~Slot() {}

        T element;
        T * capacityEnd;
    };

    static T * allocate(unsigned int capacity);
    static void free_block(T * block) noexcept;

    unsigned int count() const noexcept { return static_cast<unsigned int>(m_end - m_begin); }

    bool is_inline() const noexcept { return m_begin == &m_slot.element; }

    unsigned int capacity() const noexcept;
    unsigned int grown_capacity(unsigned int extra) const;
    void adopt_block(T * block, T * end, unsigned int capacity) noexcept;
    void grow(unsigned int extra);
    void shrink() noexcept;
    void replace_elements(T const * first, unsigned int n);
    template <typename Construct>
    void append(Construct construct);

    T * m_begin;
    T * m_end;
    Slot m_slot;
};

/// At most one element, held by one holder; a copy is a second object.
template <typename T>
class VXATTRIBUTE_API SingleValueImpl final : public TypedValue<T> {
  public:
    using typename TypedValue<T>::Arg;

    SingleValueImpl() noexcept = default;
    explicit SingleValueImpl(Arg const & x);

    void release() const noexcept override;
    ValueBase * clone() const override;
    void prepare_write(ValueHolder & holder) override;
    void promote_to_multivalue(ValueHolder & holder) override;
    void clear(ValueHolder & holder) override;
    void set_single(ValueHolder & holder, Arg const & value) override;
};

/// Any number of elements, shared by count and copied on the first write.
template <typename T>
class VXATTRIBUTE_API RefCountedValueImpl final : public TypedValue<T> {
  public:
    using typename TypedValue<T>::Arg;

    RefCountedValueImpl() noexcept = default;
    explicit RefCountedValueImpl(Arg const & x);
    RefCountedValueImpl(T const * first, T const * last);

    void release() const noexcept override;
    ValueBase * clone() const override;
    void prepare_write(ValueHolder & holder) override;
    void promote_to_multivalue(ValueHolder & holder) override;
    void clear(ValueHolder & holder) override;
    void set_single(ValueHolder & holder, Arg const & value) override;

  private:
    mutable vxcore::AtomicRefCount m_count{1};
};

/// Objects that the factory of a type shares out; only strings have some.
template <typename T>
struct ValueFactoryStatics {};

template <>
struct VXATTRIBUTE_API ValueFactoryStatics<std::string> {
    /// The empty value, and the value of one empty string. Their own reference keeps both shared
    /// for ever, so nobody writes to them in place.
    static ValueHolder const & sm_defaultConstructed;
    static ValueHolder const & sm_emptyString;
};

/// Makes values of one type, in the class that suits the elements. The caller owns the result.
template <typename T>
struct VXATTRIBUTE_API ValueFactory : ValueFactoryStatics<T> {
    /// The empty value of the type.
    static TypedValue<T> * create_value();
    /// One element.
    static TypedValue<T> * create_value(ElementArg<T> const & x);
    /// A copy of the elements [first, last).
    static TypedValue<T> * create_value(T const * first, T const * last);
    /// The canonical form of `value`: a static object where there is one.
    template <typename U>

    requires(has_singletons<T> && std::is_same_v<U, T>) static TypedValue<T> * create_value(
        SingleValueImpl<U> const & value) {
        return value.empty() ? create_value() : create_value(*value.begin());
    }
};

template <>
struct VXATTRIBUTE_API ValueFactory<NullValueType> {
    static TypedValue<NullValueType> * create_value() noexcept {
        return &TypedValue<NullValueType>::sm_instance;
    }
};

/// The empty value of the type with that number.
///
/// @raises error.vxattribute.value.type.unknown: no element type of this library has it.
[[nodiscard]] VXATTRIBUTE_API ValueBase * create_empty_value(ValueTypeId::EId id);

} // namespace vxattribute::impl

/// Says that an element type is instantiated in the library, once, and its default defined there in
/// load order: nobody else makes code of these. Stands in the header of each type, since the type
/// must be complete.
// clang-format off
#define VXATTRIBUTE_EXTERN_ELEMENT(T)                                                              \
    template <> VXATTRIBUTE_API vxattribute::impl::ValueTypeTraitsBase<T>::DefaultHolder const &   \
        vxattribute::impl::ValueTypeTraitsBase<T>::sm_default;                                     \
    extern template class vxattribute::impl::TypedValue<T>;                                        \
    extern template class vxattribute::impl::RefCountedValueImpl<T>;                               \
    extern template struct vxattribute::impl::ValueFactory<T>
// clang-format on

VXATTRIBUTE_EXTERN_ELEMENT(bool);
VXATTRIBUTE_EXTERN_ELEMENT(long long);
VXATTRIBUTE_EXTERN_ELEMENT(double);
VXATTRIBUTE_EXTERN_ELEMENT(std::string);
