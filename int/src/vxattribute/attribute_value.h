#pragma once

#include "vxattribute/attribute_value_impl.h"
#include "vxcore/text_size.h"
#include "vxcore/transfer_source.h"

#include <concepts>
#include <string_view>
#include <type_traits>

namespace vxattribute {

namespace impl {

/// The element type that an argument of type `A` becomes; void when it becomes none.
///
/// Deliberately narrow: pointers, characters and the 64-bit unsigned types have no element type, so
/// they do not compile instead of turning into a boolean or a wrong number.
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

template <typename A>
using ArgumentElementType = typename ArgumentElement<A>::Type;

/// What `set`, `=` and the constructor of AttributeValue take beside texts and maps.
template <typename A>
concept ElementArgumentType = !std::is_void_v<ArgumentElementType<A>>;

using TextArg = ValueTypeTraits<std::string>::AssignArg;

/// The argument as the factories take it: an element as it is, a number widened, a text as a pair.
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

/// Tells the constructor that adopts a representation from all others.
struct ValueAttachTag {};

} // namespace impl

/// One typed value: null, or no, one or many elements of one of fourteen element types.
///
/// A value is one pointer wide. Null differs from a typed empty value, and a typed empty value from
/// a value of one default element.
///
/// Cost. Null, booleans, the integers -1 to 7 and empty strings take no memory. Any other scalar is
/// one block, element included (48 bytes for a double on a 64-bit machine). Copying String, Binary,
/// Serialized, Secured and every multi-value adds one to an atomic count; copying another scalar
/// makes one block of its own. The first write to a shared value copies its elements once:
/// O(size()).
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
/// Element types beyond bool, integer, double and string need a header of their own to be used:
/// core_elements.h, binary_value.h, serialized_value.h, attribute_map.h.
///
/// Not an order for sorting when doubles may be NaN: see docs/guide/comparison.md.
class VXATTRIBUTE_API AttributeValue {
  public:
    /// A null value, good at any moment of the process.
    static AttributeValue const null;

    /// Null.
    constexpr AttributeValue() noexcept = default;

    /// @cost  As told for the class: one count, or one block.
    AttributeValue(AttributeValue const & other) : m_holder(other.m_holder->clone()) {}

    /// Takes over; `other` is null afterwards. Touches no count.
    AttributeValue(AttributeValue && other) noexcept = default;

    AttributeValue(vxcore::TransferSource<AttributeValue> source) noexcept
        : m_holder(source.get().m_holder.detach()) {}

    /// The empty value of that type.
    ///
    /// @raises error.vxattribute.value.type.unknown: the library has no elements of that type.
    explicit AttributeValue(ValueTypeId const & type);

    /// A scalar. Integers of every width that fits 64 bits signed, `float`, string and string_view
    /// become what one expects; see impl::ArgumentElement for what does not compile.
    template <impl::ElementArgumentType A>
    AttributeValue(A const & element)
        : m_holder(impl::ValueFactory<impl::ArgumentElementType<A>>::create_value(
              impl::element_argument(element))) {}

    /// A String up to the terminator. A template, so that 0 and nullptr do not become a text.
    template <std::same_as<char> Char>
    AttributeValue(Char const * text) : AttributeValue(impl::TextArg(text)) {}

    /// A String of `size` bytes.
    AttributeValue(char const * data, unsigned int size)
        : AttributeValue(impl::TextArg(data, size)) {}

    /// A scalar that shares the map's storage.
    AttributeValue(AttributeMap const & map);
    AttributeValue(MutableAttributeMap const & map);

    ~AttributeValue() = default;

    /// Takes `other` over and releases the old value last.
    AttributeValue & operator=(AttributeValue other) noexcept {
        swap(other);
        return *this;
    }

    AttributeValue & operator=(vxcore::TransferSource<AttributeValue> source) noexcept {
        return *this = AttributeValue(source);
    }

    /// The same as `set`.
    template <impl::ElementArgumentType A>
    AttributeValue & operator=(A const & element) {
        set(element);
        return *this;
    }

    template <std::same_as<char> Char>
    AttributeValue & operator=(Char const * text) {
        set_string(impl::TextArg(text));
        return *this;
    }

    vxcore::TransferSource<AttributeValue> transfer() noexcept {
        return vxcore::TransferSource<AttributeValue>(*this);
    }

    void swap(AttributeValue & other) noexcept { m_holder.swap(other.m_holder); }

    /// Exchanges the representation with that of a holder.
    void swap_impl(impl::ValueHolder & holder) noexcept { m_holder.swap(holder); }

    /// Makes this a scalar of the element, whatever the type was before. A value of the same type
    /// that is not shared is written in place.
    template <impl::ElementArgumentType A>
    void set(A const & element) {
        set_element<impl::ArgumentElementType<A>>(impl::element_argument(element));
    }

    template <std::same_as<char> Char>
    void set(Char const * text) {
        set_string(impl::TextArg(text));
    }

    void set(char const * data, unsigned int size) { set_string(impl::TextArg(data, size)); }

    /// Shares the map's storage. A value inside a map must not be given that map, nor one that
    /// contains it: see MutableAttributeMap::operator[]. The same holds for `=`, `swap` and
    /// `multivalue_writer`.
    void set(AttributeMap const & map);
    void set(MutableAttributeMap const & map);

    void set_string(impl::TextArg const & value) { set_element<std::string>(value); }

    void set_string(char const * data, unsigned int size) { set_string(impl::TextArg(data, size)); }

    void set_null() noexcept {
        m_holder.attach(impl::ValueFactory<impl::NullValueType>::create_value());
    }

    /// Removes all elements; the type stays. Null stays null.
    void clear() { m_holder->clear(m_holder); }

    ValueTypeId const & type() const noexcept { return m_holder->type(); }

    unsigned int size() const noexcept { return m_holder->size(); }

    /// No elements; true for null too.
    bool empty() const noexcept { return m_holder->empty(); }

    bool is_null_or_empty() const noexcept { return empty(); }

    bool is_null() const noexcept { return type() == ValueTypeId::typeNull; }

    bool is_multivalue() const noexcept { return size() > 1; }

    /// Equal values have equal hashes, save that +0.0 equals -0.0 and hashes apart. O(size()).
    unsigned int hash() const { return m_holder->hash(); }

    /// The elements from `pos` on, or `count` of them, as a value of the same type. The whole range
    /// shares storage; any other is a copy.
    ///
    /// @raises std::out_of_range: the range is not within the elements.
    AttributeValue subrange(unsigned int pos) const {
        return AttributeValue(m_holder->subrange(pos), impl::ValueAttachTag());
    }

    AttributeValue subrange(unsigned int pos, unsigned int count) const {
        return AttributeValue(m_holder->subrange(pos, count), impl::ValueAttachTag());
    }

    /// Renders the value; see TraceFormatter.
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
    /// @keeps  The reference holds until this object is changed or destroyed; a copy of the value
    ///         does not keep it.
    template <impl::ElementType T>
    T const & get() const VXCORE_LIFETIMEBOUND {
        return typed<T>().get();
    }

    /// The element at `index`.
    ///
    /// @raises As `get`, and std::out_of_range when there is no such element.
    template <impl::ElementType T>
    T const & at(unsigned int index) const VXCORE_LIFETIMEBOUND {
        return typed<T>().at(index);
    }

    /// All elements, as pointers into this value; raises as `get` on another type.
    template <impl::ElementType T>
    T const * begin() const VXCORE_LIFETIMEBOUND {
        return typed<T>().begin();
    }

    template <impl::ElementType T>
    T const * end() const VXCORE_LIFETIMEBOUND {
        return typed<T>().end();
    }

    /// Opens the value for building a multi-value; see MultiValueWriter. A null value becomes an
    /// empty one of the type.
    ///
    /// @raises error.vxattribute.value.type.mismatch: the value is of another type and not null.
    template <impl::ElementType T>
    impl::MultiValueWriter<T> multivalue_writer() VXCORE_LIFETIMEBOUND;

    /// Order over all values: by type number, then element by element, a prefix first. A NaN
    /// compares 0 with anything. Between two types the result is the difference of their numbers.
    int compare(AttributeValue const & other) const {
        return m_holder->compare(*other.m_holder.get());
    }

    /// The same, but with A to Z as a to z when both values are Strings.
    int compare_nocase_ascii(AttributeValue const & other) const;

    /// A rule of its own, not always `compare` == 0: a NaN equals nothing, not even its copy.
    friend bool operator==(AttributeValue const & a, AttributeValue const & b) {
        return a.m_holder->equal(*b.m_holder.get());
    }

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

    AttributeValue(impl::ValueBase * value, impl::ValueAttachTag) noexcept : m_holder(value) {}

    explicit AttributeValue(impl::TextArg const & text)
        : m_holder(impl::ValueFactory<std::string>::create_value(text)) {}

    template <typename T>
    impl::TypedValue<T> const & typed() const {
        throw_if_not_type(impl::ValueTypeTraits<T>::type());
        return static_cast<impl::TypedValue<T> const &>(*m_holder.get());
    }

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
