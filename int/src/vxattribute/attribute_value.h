#pragma once

#include "vxattribute/attribute_value_impl.h"
#include "vxattribute/ostream.h"
#include "vxcore/text_size.h"
#include "vxcore/transfer_source.h"

#include <concepts>
#include <string_view>
#include <type_traits>

namespace vxattribute {

namespace impl {

/// The element type for an argument of type `A`; void when there is none.
///
/// Deliberately narrow: pointers, characters and the 64-bit unsigned types have no element type.
/// They do not compile, so that none becomes a boolean or a wrong number. Cast such an argument to
/// the element type that you mean.
template <typename A>
struct ArgumentElement {
    static constexpr bool is_character = std::same_as<A, char> || std::same_as<A, wchar_t> ||
                                         std::same_as<A, char8_t> || std::same_as<A, char16_t> ||
                                         std::same_as<A, char32_t>;
    static constexpr bool is_integer = std::integral<A> && !std::same_as<A, bool> &&
                                       !is_character &&
                                       (std::signed_integral<A> || sizeof(A) < sizeof(long long));
    static constexpr bool is_text =
        std::same_as<A, std::string> || std::same_as<A, std::string_view>;

    using Type = std::conditional_t<
        is_element_type<A>, A,
        std::conditional_t<is_integer, long long,
                           std::conditional_t<std::same_as<A, float>, double,
                                              std::conditional_t<is_text, std::string, void>>>>;
};

/// Short for the element type of an argument.
template <typename A>
using ArgumentElementType = typename ArgumentElement<A>::Type;

/// The arguments of `set`, `=` and the constructor of AttributeValue, besides texts and maps.
template <typename A>
concept ElementArgumentType = !std::is_void_v<ArgumentElementType<A>>;

/// A text as a (data, size) pair; refers to the caller's text.
using TextArg = ValueTypeTraits<std::string>::AssignArg;

/// The argument for the factories: an element unchanged, a number widened, a text as a pair. The
/// result refers to `a` unless it is a number.
///
/// @raises std::length_error: a text is longer than 2^32 - 1 bytes.
template <ElementArgumentType A>
decltype(auto) element_argument(A const & a) {
    using T = ArgumentElementType<A>;
    if constexpr (std::same_as<T, std::string>) {
        return TextArg(a.data(), vxcore::text_size(a.size()));
    } else if constexpr (std::same_as<A, T>) {
        return static_cast<A const &>(a);
    } else {
        return static_cast<T>(a);
    }
}

/// Selects the constructor that adopts a representation.
struct ValueAttachTag {};

} // namespace impl

/// One typed value: null, or no, one or many elements of one element type (see ValueTypeId).
///
/// A value has the size of one pointer. Null, a typed empty value and a value of one default
/// element are three different values.
///
/// Cost. Null, booleans, the integers -1 to 7 and empty strings take no memory. Any other scalar is
/// one block that includes the element (48 bytes for a double on a 64-bit machine). Copying String,
/// Binary, Serialized, Secured and every multi-value adds one to an atomic count; copying another
/// scalar allocates one block. The first write to a shared value copies its elements: O(size()).
///
/// Threads. Separate objects may be used from separate threads even when they share storage. One
/// object: many readers or one writer.
///
/// Errors. Typed reads raise error.vxattribute.value.type.mismatch on another type (null counts as
/// another) and error.vxattribute.value.cardinality.expectSingle on more than one element. After
/// any failure the value is as it was.
///
///     AttributeValue port(8080);
///     AttributeValue backup = port;      // own copy
///     port.set("http");                  // the type may change; backup is still the integer 8080
///
/// What dangles. References, pointers and spans to elements are valid until the value is changed or
/// destroyed, and no copy of the value extends that. A reference into a temporary value dangles at
/// the end of the statement; clang warns:
///
///     long long n = AttributeValue(5).get<long long>(); // valid: n is a copy
///     auto const & map = value_from_json(text).get<AttributeMap>(); // dangles
///     for (auto const & map : elements<AttributeMap>(value_from_json(text))) // dangles
///
/// Element types other than bool, integer, double and string need their own header:
/// core_elements.h, binary_value.h, serialized_value.h, secured_value.h, attribute_map.h.
///
/// The order is not suitable for sorting when doubles may be NaN: see docs/guide/comparison.md.
class VXATTRIBUTE_API AttributeValue {
  public:
    /// A null value that is usable at any time, even before load-time code has run.
    static AttributeValue const null;

    /// A null value.
    constexpr AttributeValue() noexcept = default;

    /// @cost  One count, or one block, as described for the class.
    AttributeValue(AttributeValue const & other) : m_holder(other.m_holder->clone()) {}

    /// Moves the content of `other`, or of the source of `transfer`, which is null afterwards. No
    /// allocation, no count touched.
    AttributeValue(AttributeValue && other) noexcept = default;

    AttributeValue(vxcore::TransferSource<AttributeValue> source) noexcept
        : m_holder(source.get().m_holder.detach()) {}

    /// The empty value of that type.
    ///
    /// @raises error.vxattribute.value.type.unknown: the library has no elements of that type.
    explicit AttributeValue(ValueTypeId const & type);

    /// A scalar. Integer types that fit into 64 bits signed become Integer, `float` becomes Double,
    /// string and string_view become String. See impl::ArgumentElement for what does not compile.
    ///
    /// @raises std::length_error: a text is longer than 2^32 - 1 bytes. So for every text below.
    template <impl::ElementArgumentType A>
    AttributeValue(A const & element)
        : m_holder(impl::ValueFactory<impl::ArgumentElementType<A>>::create_value(
              impl::element_argument(element))) {}

    /// A String of the text up to its terminator. A template, so that 0 and nullptr do not compile.
    template <std::same_as<char> Char>
    AttributeValue(Char const * text) : AttributeValue(impl::TextArg(text)) {}

    /// A String of `size` bytes, which may include zeros.
    AttributeValue(char const * data, unsigned int size)
        : AttributeValue(impl::TextArg(data, size)) {}

    /// A scalar that shares the map's storage. Later changes of the map do not show in the value.
    AttributeValue(AttributeMap const & map);
    AttributeValue(MutableAttributeMap const & map);

    /// Releases the elements. Nested maps of any depth are destroyed without recursion.
    ~AttributeValue() = default;

    /// Moves the argument in and releases the old value last. Raises only while a copy is made for
    /// the argument; this value is unchanged then.
    AttributeValue & operator=(AttributeValue other) noexcept {
        swap(other);
        return *this;
    }

    AttributeValue & operator=(vxcore::TransferSource<AttributeValue> source) noexcept {
        return *this = AttributeValue(source);
    }

    /// The same as `set` with that argument.
    template <impl::ElementArgumentType A>
    AttributeValue & operator=(A const & element) {
        set(element);
        return *this;
    }

    /// Makes this a String of the text up to its terminator.
    template <std::same_as<char> Char>
    AttributeValue & operator=(Char const * text) {
        set_string(impl::TextArg(text));
        return *this;
    }

    /// Marks this value as a source to move from: it is null after the receiver took its content.
    ///
    /// @keeps  The result refers to this value: use it in the same expression.
    vxcore::TransferSource<AttributeValue> transfer() noexcept {
        return vxcore::TransferSource<AttributeValue>(*this);
    }

    /// Exchanges two values. No allocation, no count touched.
    void swap(AttributeValue & other) noexcept { m_holder.swap(other.m_holder); }

    /// Exchanges the representation with that of a holder; for code inside the library.
    void swap_impl(impl::ValueHolder & holder) noexcept { m_holder.swap(holder); }

    /// Makes this a scalar of the element, whatever its type was before. An unshared value of the
    /// same type is written in place. The element may be one of this value's own.
    ///
    /// @cost   No allocation in place, apart from what the element itself needs; otherwise as the
    ///         constructor.
    /// @raises What copying the element raises, std::bad_alloc, std::length_error for a text beyond
    ///         2^32 - 1 bytes. The value is then as it was.
    template <impl::ElementArgumentType A>
    void set(A const & element) {
        set_element<impl::ArgumentElementType<A>>(impl::element_argument(element));
    }

    /// Makes this a String, as the constructors with the same arguments do.
    template <std::same_as<char> Char>
    void set(Char const * text) {
        set_string(impl::TextArg(text));
    }

    void set(char const * data, unsigned int size) { set_string(impl::TextArg(data, size)); }

    /// Makes this a scalar that shares the map's storage. A value inside a map must not be set to
    /// that map or to one that contains it: see MutableAttributeMap::operator[]. The same applies
    /// to `=`, `swap` and `multivalue_writer`.
    void set(AttributeMap const & map);
    void set(MutableAttributeMap const & map);

    /// Makes this a String.
    void set_string(impl::TextArg const & value) { set_element<std::string>(value); }

    void set_string(char const * data, unsigned int size) { set_string(impl::TextArg(data, size)); }

    /// Makes this null and releases the elements.
    void set_null() noexcept {
        m_holder.attach(impl::ValueFactory<impl::NullValueType>::create_value());
    }

    /// Removes all elements and keeps the type. Null stays null. Shared elements stay in the other
    /// copies. An unshared value allocates nothing.
    void clear() { m_holder->clear(m_holder); }

    /// The type, a constant of ValueTypeId: the reference is always valid.
    ValueTypeId const & type() const noexcept { return m_holder->type(); }

    /// The number of elements; 0 for null. O(1).
    unsigned int size() const noexcept { return m_holder->size(); }

    /// True without elements, and for null. Both names mean the same.
    bool empty() const noexcept { return m_holder->empty(); }

    bool is_null_or_empty() const noexcept { return empty(); }

    /// True for null only, not for a typed empty value.
    bool is_null() const noexcept { return type() == ValueTypeId::typeNull; }

    /// True for two or more elements.
    bool is_multivalue() const noexcept { return size() > 1; }

    /// Equal values have equal hashes, except +0.0 and -0.0, which are equal and hash differently.
    /// The hash of null and of any value without elements is 0. The hash of a value with maps in it
    /// differs from process to process, because names are hashed with a secret. O(size()), with the
    /// bytes of all elements, except those of Serialized and Secured, which store their hash.
    unsigned int hash() const { return m_holder->hash(); }

    /// The elements from `pos` on, or `count` of them, as a value of the same type. A subrange of
    /// all elements is a copy of the value; any other copies its elements.
    ///
    /// @raises std::out_of_range: the range is not within the elements. `pos` may be `size()`.
    AttributeValue subrange(unsigned int pos) const {
        return AttributeValue(m_holder->subrange(pos), impl::ValueAttachTag());
    }

    AttributeValue subrange(unsigned int pos, unsigned int count) const {
        return AttributeValue(m_holder->subrange(pos, count), impl::ValueAttachTag());
    }

    /// Inserts the value as text for people, at that level of indentation; see TraceFormatter. For
    /// a string with the default settings, call `to_text`.
    ///
    /// @raises What the stream raises; part of the text may have been written by then.
    void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                     unsigned int indent) const {
        m_holder->write_trace(stream, formatter, indent);
    }

    /// The one element, or the default of `T` when the value is typed and empty.
    ///
    /// @tparam T  an element type of ValueTypeId; any other type does not compile.
    /// @raises error.vxattribute.value.type.mismatch: the type is not `T`'s; null too.
    /// @raises error.vxattribute.value.cardinality.expectSingle: two or more elements.
    /// @cost   One comparison of ids. No allocation, no count touched.
    /// @keeps  The reference is valid until this value is changed or destroyed. The default of `T`
    ///         is always valid.
    template <impl::ElementType T>
    T const & get() const VXCORE_LIFETIMEBOUND {
        return typed<T>().get();
    }

    /// The element at `index`.
    ///
    /// @raises error.vxattribute.value.type.mismatch, as `get`.
    /// @raises std::out_of_range: `index` is not below `size()`.
    /// @keeps  The reference is valid until this value is changed or destroyed.
    template <impl::ElementType T>
    T const & at(unsigned int index) const VXCORE_LIFETIMEBOUND {
        return typed<T>().at(index);
    }

    /// The first element, and the position after the last; equal without elements.
    ///
    /// @raises error.vxattribute.value.type.mismatch, as `get`.
    /// @keeps  The pointers are valid until this value is changed or destroyed.
    /// @see    elements, for both as a span
    template <impl::ElementType T>
    T const * begin() const VXCORE_LIFETIMEBOUND {
        return typed<T>().begin();
    }

    template <impl::ElementType T>
    T const * end() const VXCORE_LIFETIMEBOUND {
        return typed<T>().end();
    }

    /// Opens the value for building a multi-value; see MultiValueWriter. A null value becomes an
    /// empty value of type `T`. The writer refers to this value. Include multi_value_writer.h.
    ///
    /// @raises error.vxattribute.value.type.mismatch: the value is of another type and not null.
    template <impl::ElementType T>
    impl::MultiValueWriter<T> multivalue_writer() VXCORE_LIFETIMEBOUND;

    /// Orders all values: by type number, then element by element, a prefix first. Only the sign
    /// counts within a type; between types the result is the difference of their numbers. A NaN
    /// compares 0 with any double. O(size()) up to the first difference.
    int compare(AttributeValue const & other) const {
        return m_holder->compare(*other.m_holder.get());
    }

    /// As `compare`, but without regard to ASCII case when both values are Strings. Texts inside
    /// maps are compared with case.
    int compare_nocase_ascii(AttributeValue const & other) const;

    /// Same type and equal elements. Not always `compare` == 0: a NaN equals nothing, not even its
    /// own copy. Values of different types or sizes cost O(1).
    friend bool operator==(AttributeValue const & a, AttributeValue const & b) {
        return a.m_holder->equal(*b.m_holder.get());
    }

    /// The sign of `compare`.
    friend bool operator<(AttributeValue const & a, AttributeValue const & b) {
        return a.compare(b) < 0;
    }

    friend bool operator<=(AttributeValue const & a, AttributeValue const & b) {
        return a.compare(b) <= 0;
    }

    friend bool operator>(AttributeValue const & a, AttributeValue const & b) {
        return a.compare(b) > 0;
    }

    friend bool operator>=(AttributeValue const & a, AttributeValue const & b) {
        return a.compare(b) >= 0;
    }

  private:
    template <typename T>
    friend class impl::MultiValueWriter;

    /// Adopts `value`.
    AttributeValue(impl::ValueBase * value, impl::ValueAttachTag) noexcept : m_holder(value) {}

    explicit AttributeValue(impl::TextArg const & text)
        : m_holder(impl::ValueFactory<std::string>::create_value(text)) {}

    /// The representation, after a check of the type.
    template <typename T>
    impl::TypedValue<T> const & typed() const {
        throw_if_not_type(impl::ValueTypeTraits<T>::type());
        return static_cast<impl::TypedValue<T> const &>(*m_holder.get());
    }

    /// Writes in place when the type is the same, and otherwise makes a new representation.
    template <typename T>
    void set_element(impl::ElementArg<T> const & element) {
        if (type() == impl::ValueTypeTraits<T>::type()) {
            static_cast<impl::TypedValue<T> &>(*m_holder.get()).set_single(m_holder, element);
        } else {
            m_holder.attach(impl::ValueFactory<T>::create_value(element));
        }
    }

    void throw_if_not_type(ValueTypeId const & expected) const {
        if (!(type() == expected)) [[unlikely]] {
            raise_type_error(expected);
        }
    }

    [[noreturn]] void raise_type_error(ValueTypeId const & expected) const;

    impl::ValueHolder m_holder;
};

} // namespace vxattribute
