#pragma once

/// The representation of an AttributeValue. Include "vxattribute/attribute_value.h" instead: this
/// header is installed only because inline code of callers needs it.
///
/// An AttributeValue is a ValueHolder, a pointer to one object of these classes:
///
/// - TypedValue<NullValueType>: null, one static object.
/// - SingleValueImpl<T>: at most one element, copied with the value.
/// - RefCountedValueImpl<T>: any number of elements, shared by copies of the value.
/// - Static objects of the common booleans and integers, which are neither counted nor destroyed.
///
/// ValueFactory<T> chooses among them, by the column `storage` of element_type_table.inc.
/// TypedValue<T>, their base, holds the elements.

#include "vxattribute/value_holder_impl.h"
#include "vxcore/ref_count.h"

namespace vxattribute::impl {

/// Raise error.vxattribute.value.cardinality.expectNonzero and .expectSingle. Out of line, so that
/// `front` and `get` stay small in the code of callers.
[[noreturn]] VXATTRIBUTE_API void throw_array_empty_error();
[[noreturn]] VXATTRIBUTE_API void throw_get_on_multi_value_attribute();

/// The argument type for an element: a (data, size) pair for texts, otherwise the type itself.
template <typename T>
struct ElementArgument {
    using Type = T;
};

template <>
struct ElementArgument<std::string> {
    using Type = ValueTypeTraits<std::string>::AssignArg;
};

/// Short for the argument type.
template <typename T>
using ElementArg = typename ElementArgument<T>::Type;

/// True when a lone element has an unshared form, SingleValueImpl. Elements of the other types are
/// always counted, because copying them is expensive.
template <typename T>
inline constexpr bool has_single_value_impl = element_type_row<T>.storage != eStorage_Shared;

/// True when common values of the type are static objects.
template <typename T>
inline constexpr bool has_singletons = element_type_row<T>.storage == eStorage_Static;

/// A run of elements in memory. At most one element lives inside the object itself (the inline
/// slot); two or more live in a block from the heap.
///
/// Invariants: 1. begin <= end. 2. The union holds the element while `m_begin` points at the inline
/// slot, otherwise the end of the block. 3. Two or more elements are always in a block.
///
/// The storage operations do not check whether the object is shared. Call them only on a new object
/// or after `prepare_write`. When they raise, the elements are as they were. They raise
/// std::bad_alloc, what copying an element raises, and std::length_error beyond 2^32 - 1 elements.
/// All of them make pointers and references to elements invalid, and accept arguments that are
/// elements of this object.
///
/// Before a value gets a second element, call `promote_to_multivalue`: SingleValueImpl must keep at
/// most one.
///
///     holder->prepare_write(holder);         // each call may replace the object
///     holder->promote_to_multivalue(holder);
///     static_cast<TypedValue<T> &>(*holder.get()).push_back(x);
///
/// Cost. Growing at least doubles the block, so appending takes constant time on average. Erasing
/// down to one element moves it into the inline slot and frees the block.
template <typename T>
class VXATTRIBUTE_API TypedValue : public ValueBase {
  public:
    using Traits = ValueTypeTraits<T>;
    using Arg = ElementArg<T>;

    /// The elements, contiguous in memory; equal pointers, not null, without elements.
    T const * begin() const noexcept { return m_begin; }

    T const * end() const noexcept { return m_end; }

    /// The element at that index.
    ///
    /// @raises std::out_of_range: `index` is not below `size()`.
    T const & at(unsigned int index) const {
        if (index >= count()) {
            throw_at_range_error();
        }
        return m_begin[index];
    }

    /// The one element, or the type's default when there is none.
    ///
    /// @raises error.vxattribute.value.cardinality.expectSingle: two or more elements.
    T const & get() const {
        if (m_end - m_begin == 1) [[likely]] {
            return *m_begin;
        }
        if (m_end != m_begin) {
            throw_get_on_multi_value_attribute();
        }
        return Traits::default_value();
    }

    /// The first element.
    ///
    /// @raises error.vxattribute.value.cardinality.expectNonzero: there is none.
    T const & front() const {
        if (m_begin == m_end) {
            throw_array_empty_error();
        }
        return *m_begin;
    }

    /// Makes room for `n` elements in total, in a block of at least twice the present capacity.
    /// Never shrinks.
    void reserve(unsigned int n);
    /// Appends a copy of `x`, which may be an element of this value.
    void push_back(Arg const & x);
    /// Replaces the elements by copies of [first, last), which may lie in this value. Reuses the
    /// block when it is large enough and copies do not raise.
    void assign(T const * first, T const * last);
    /// Appends a default element and returns it, for a reader to fill.
    T & push_back_default();

    // As in ValueBase, by the rules of `Traits`. A subrange of all elements is a clone. The hash
    // folds the hashes of the elements: h = h * 5 + x.
    ValueBase * subrange(unsigned int pos) const override;
    ValueBase * subrange(unsigned int pos, unsigned int count) const override;
    bool equal(ValueBase const & other) const override;
    int compare(ValueBase const & other) const override;
    bool empty() const noexcept override;
    unsigned int size() const noexcept override;
    unsigned int hash() const override;
    void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                     unsigned int indent) const override;

    /// Destroys the elements and frees their block.
    virtual ~TypedValue();
    /// Replaces the elements of the holder's value by `value` alone, which may be one of them. An
    /// unshared value is written in place.
    virtual void set_single(ValueHolder & holder, Arg const & value) = 0;

    /// Memory of objects comes from the block cache of the thread: a few instructions in most
    /// cases. Any thread may free an object.
    static void * operator new(std::size_t size);
    static void operator delete(void * object, std::size_t size) noexcept;

  protected:
    /// Without elements: begin and end are the inline slot.
    constexpr TypedValue() noexcept : ValueBase(&Traits::type()), m_begin(nullptr), m_end(nullptr) {
        m_begin = m_end = &m_slot.element;
    }

    /// A static object with one plain element.
    constexpr explicit TypedValue(T x) noexcept requires has_singletons<T>
        : ValueBase(&Traits::type()), m_begin(nullptr), m_end(nullptr), m_slot(x) {
        m_begin = &m_slot.element;
        m_end = m_begin + 1;
    }

    TypedValue(TypedValue const &) = delete;
    TypedValue & operator=(TypedValue const &) = delete;

    /// Assigns before it erases, because `value` may be one of the erased elements.
    void set_single_in_place(Arg const & value);
    void clear_in_place() noexcept;

  private:
    /// The inline element, or the end of the block that replaces it. The class decides which, and
    /// constructs and destroys the element.
    union Slot {
        constexpr Slot() noexcept : capacityEnd(nullptr) {}

        template <typename U>
        constexpr explicit Slot(U x) noexcept : element(x) {}

        ~Slot() {}

        T element;
        T * capacityEnd;
    };

    /// Raw storage for `capacity` elements, and its release. Elements in it are not destroyed.
    static T * allocate(unsigned int capacity);
    static void free_block(T * block, unsigned int capacity) noexcept;

    unsigned int count() const noexcept { return static_cast<unsigned int>(m_end - m_begin); }

    bool is_inline() const noexcept { return m_begin == &m_slot.element; }

    /// Elements that fit without growing: 1 in the inline slot.
    unsigned int capacity() const noexcept;

    // How blocks change: see value/typed_value_storage_internal.h.
    unsigned int grown_capacity(unsigned int extra) const;
    void adopt_block(T * block, T * end, unsigned int capacity) noexcept;
    void grow(unsigned int extra);
    void shrink() noexcept;

    // How elements change: see value/typed_value_changes_internal.h.
    void replace_elements(T const * first, unsigned int n);
    template <typename Construct>
    void append(Construct construct);

    T * m_begin; // the first element: in the inline slot or a block
    T * m_end;
    Slot m_slot;
};

/// At most one element, owned by one holder: nothing is counted. A clone is a second object with a
/// copy of the element, or a static object where there is one. Writing needs no preparation.
template <typename T>
class VXATTRIBUTE_API SingleValueImpl final : public TypedValue<T> {
  public:
    using typename TypedValue<T>::Arg;

    /// Without an element, or with a copy of `x`.
    SingleValueImpl() noexcept = default;
    explicit SingleValueImpl(Arg const & x);

    // As in ValueBase and TypedValue. Only `promote_to_multivalue` replaces the object.
    void release() const noexcept override;
    ValueBase * clone() const override;
    void prepare_write(ValueHolder & holder) override;
    void promote_to_multivalue(ValueHolder & holder) override;
    void clear(ValueHolder & holder) override;
    void set_single(ValueHolder & holder, Arg const & value) override;
};

/// Any number of elements, reference-counted and copied on the first write. The count is atomic and
/// starts at 1. A clone is one more reference to this object. `clear` and `set_single` on a shared
/// object replace it without copying its elements.
template <typename T>
class VXATTRIBUTE_API RefCountedValueImpl final : public TypedValue<T> {
  public:
    using typename TypedValue<T>::Arg;

    /// Without elements, with a copy of `x`, or with copies of [first, last).
    RefCountedValueImpl() noexcept = default;
    explicit RefCountedValueImpl(Arg const & x);
    RefCountedValueImpl(T const * first, T const * last);

    // As in ValueBase and TypedValue. `promote_to_multivalue` does nothing.
    void release() const noexcept override;
    ValueBase * clone() const override;
    void prepare_write(ValueHolder & holder) override;
    void promote_to_multivalue(ValueHolder & holder) override;
    void clear(ValueHolder & holder) override;
    void set_single(ValueHolder & holder, Arg const & value) override;

  private:
    mutable vxcore::AtomicRefCount m_count{1};
};

/// Values that the factory of a type shares between callers. Only strings have any.
template <typename T>
struct ValueFactoryStatics {};

template <>
struct VXATTRIBUTE_API ValueFactoryStatics<std::string> {
    /// The empty value, and the value of one empty string. The library keeps a reference to each,
    /// so that they are always shared and never written in place.
    static ValueHolder const & sm_defaultConstructed;
    static ValueHolder const & sm_emptyString;
};

/// Creates values of one type in the suitable class. The caller owns the result.
///
/// Booleans, the integers -1 to 7, empty strings and the empty values of these types are static or
/// shared objects: no allocation. Any other lone element is one block that includes it. Two or more
/// elements are an object and a block of exactly their size.
///
///     ValueHolder holder(ValueFactory<long long>::create_value(8080)); // owns it at once
///     value.swap_impl(holder);
///
/// @raises std::bad_alloc, or what copying an element raises; std::length_error beyond 2^32 - 1
///         elements.
template <typename T>
struct VXATTRIBUTE_API ValueFactory : ValueFactoryStatics<T> {
    /// The empty value of the type.
    static TypedValue<T> * create_value();
    /// One element.
    static TypedValue<T> * create_value(ElementArg<T> const & x);
    /// Copies of the elements [first, last).
    static TypedValue<T> * create_value(T const * first, T const * last);
    /// A copy of `value`: a static object if there is one.
    template <typename U>

    requires(has_singletons<T> && std::is_same_v<U, T>) static TypedValue<T> * create_value(
        SingleValueImpl<U> const & value) {
        return value.empty() ? create_value() : create_value(*value.begin());
    }
};

/// Null: always the same static object.
template <>
struct VXATTRIBUTE_API ValueFactory<NullValueType> {
    static TypedValue<NullValueType> * create_value() noexcept {
        return &TypedValue<NullValueType>::sm_instance;
    }
};

/// The empty value of the type with that number. The caller owns it.
///
/// @raises error.vxattribute.value.type.unknown: no type has that number.
[[nodiscard]] VXATTRIBUTE_API ValueBase * create_empty_value(ValueTypeId::EId id);

} // namespace vxattribute::impl

/// Declares that the library instantiates the templates of an element type and defines its default,
/// so that no other code does. Used in the header of each type, because the type must be complete.
// clang-format off
#define VXATTRIBUTE_EXTERN_ELEMENT(T)                                                              \
    template <> VXATTRIBUTE_API vxattribute::impl::ValueTypeTraitsBase<T>::DefaultHolder const &   \
        vxattribute::impl::ValueTypeTraitsBase<T>::sm_default;                                     \
    extern template class vxattribute::impl::TypedValue<T>;                                        \
    extern template class vxattribute::impl::RefCountedValueImpl<T>;                               \
    extern template struct vxattribute::impl::ValueFactory<T>
// clang-format on

// The types that need no header of their own.
VXATTRIBUTE_EXTERN_ELEMENT(bool);
VXATTRIBUTE_EXTERN_ELEMENT(long long);
VXATTRIBUTE_EXTERN_ELEMENT(double);
VXATTRIBUTE_EXTERN_ELEMENT(std::string);
