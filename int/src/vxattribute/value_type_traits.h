#pragma once

#include "vxattribute/attribute_value_type.h"
#include "vxattribute/fwd.h"
#include "vxcore/fwd.h"
#include "vxuri/fwd.h"

#include <cstring>
#include <iosfwd>
#include <new>
#include <string>
#include <utility>

/// The rules per element type: default, order, equality, hash, construction, relocation, rendering.
///
/// All are static members, so that the templates of attribute_value_impl.h need no virtual call per
/// element. A program does not call them: it uses AttributeValue. `ValueTypeTraits<T>` has:
///
/// - `type()`: the constant of ValueTypeId.
/// - `default_value()`: the element that a typed empty value reads as.
/// - `compare(a, b)`: the order; only the sign of the result counts. `equal(a, b)`: equality, which
///   is not `compare` == 0 for every type.
/// - `hash(a)`: equal elements have equal hashes, except +0.0 and -0.0.
/// - `construct_value(p, v)`: copies `v` to raw storage. `assign_value(p, v)`: replaces the element
///   at `p`. Both may raise what a copy raises, and the storage is then as it was.
/// - `move_construct_range(first, last, dest)`: moves [first, last) to raw storage elsewhere,
///   destroys the sources and returns the end of the result.
/// - `erase_range(first, last, end)`: removes [first, last) from the elements that end at `end`,
///   moves the rest down and returns the new end. The places after it are raw storage.
/// - `write_trace(stream, formatter, indent, begin, end)`: renders the elements [begin, end) of one
///   value as text for people: type name, frame and elements. It raises what the stream raises.
///
/// Cost. What depends on a type is chosen when the templates are compiled. Only the `hash`,
/// `compare` and `equal` of types with content of any size, such as String, take more than constant
/// time.
///
/// Threads. There is no state but the defaults, which never change.
///
/// element_type_table.inc explains how to add a type.
namespace vxattribute::impl {

/// The element type of ErrorInfo values; may be null.
using ErrorInfoPtr = vxcore::RefCountPtr<vxcore::ErrorInfo const>;

/// Columns of element_type_table.inc, which explains each value: how a lone element is kept, how
/// elements move to another block, and what a list in a stream makes.
enum EElementStorage { eStorage_Static, eStorage_Single, eStorage_Shared };

enum EElementRelocation { eRelocation_Bytes, eRelocation_Move, eRelocation_Copy };

enum EElementList { eList_Sized, eList_Array };

/// The row of an element type in element_type_table.inc: the columns that templates choose their
/// code by. The others, such as the name, are needed in single places, which include the table.
struct ElementTypeRow {
    ValueTypeId::EId id; ///< the column `number`
    EElementStorage storage;
    EElementRelocation relocation;
    EElementList list;
};

/// The row of `T`; one with the number of null when values have no elements of type `T`.
template <typename T>
inline constexpr ElementTypeRow element_type_row = {ValueTypeId::eId_Null, eStorage_Single,
                                                    eRelocation_Move, eList_Sized};

#define VX_ELEMENT_TYPE(number, Id, name, Type, storage, relocation, wire, list)                   \
    template <>                                                                                    \
    inline constexpr ElementTypeRow element_type_row<Type> = {                                     \
        ValueTypeId::eId_##Id, eStorage_##storage, eRelocation_##relocation, eList_##list};
#include "vxattribute/element_type_table.inc"
#undef VX_ELEMENT_TYPE

/// True for the types that a value can hold elements of.
template <typename T>
inline constexpr bool is_element_type = element_type_row<T>.id != ValueTypeId::eId_Null;

/// The constraint of every typed function. A class is an element type even where its header is not
/// included; using it then fails because its traits are incomplete.
template <typename T>
concept ElementType = is_element_type<T>;

/// Common to all element types: the default object, and order and equality by the type's own `<`
/// and `==`.
template <typename T>
struct ValueTypeTraitsBase {
    /// Keeps the default element, made by `T()`: zero for plain types.
    class DefaultHolder {
      public:
        constexpr DefaultHolder() noexcept(noexcept(T())) : m_value() {}

        T const & value() const noexcept { return m_value; }

      private:
        T m_value;
    };

    /// A reference, because the linker may copy an exported object into the program before
    /// load-time code has filled it. A copy of the reference still names the filled object.
    static DefaultHolder const & sm_default;

    /// The default element. Usable once load-time code has run, as long as the library is loaded.
    static T const & default_value() noexcept { return sm_default.value(); }

    /// -1, 0 or 1 by `<`, and `==`. A type with another order replaces both.
    static int compare(T const & a, T const & b) { return a < b ? -1 : (b < a ? 1 : 0); }

    static bool equal(T const & a, T const & b) { return a == b; }
};

/// For `bool`, `long long` and `double`: plain bytes. Nothing here raises, and nothing is
/// destroyed.
template <typename T>
struct PodValueTypeTraits : ValueTypeTraitsBase<T> {
    /// Both only store the value: plain types need no constructor call.
    static void construct_value(T * p, T v) noexcept { *p = v; }

    static void assign_value(T * p, T v) noexcept { *p = v; }

    /// One copy of the bytes. The ranges may overlap.
    static T * move_construct_range(T * first, T * last, T * dest) noexcept {
        return copy_bytes(first, last, dest);
    }

    /// Copies the elements from `last` on over the erased ones. O(end - last).
    static T * erase_range(T * first, T * last, T * end) noexcept {
        return copy_bytes(last, end, first);
    }

  private:
    /// Copies [first, last), which may overlap the target, and returns the end of the copy. memmove
    /// must not get null pointers, even for 0 bytes.
    static T * copy_bytes(T const * first, T const * last, T * dest) noexcept {
        auto const count = static_cast<std::size_t>(last - first);
        if (count != 0) {
            std::memmove(static_cast<void *>(dest), first, count * sizeof(T));
        }
        return dest + count;
    }
};

/// For all other types. Movable and relocatable: elements are moved. Only relocatable: their bytes
/// are copied. Neither: elements are copied one by one, which may raise. The column `relocation` of
/// the table chooses one of the three.
template <typename T, bool Movable, bool Relocatable>
struct ObjValueTypeTraitsBase;

/// Elements are moved, which must not raise.
template <typename T>
struct ObjValueTypeTraitsBase<T, true, true> : ValueTypeTraitsBase<T> {
    /// Moves each element and destroys its source. `dest` may lie before `first` in the same block,
    /// as when elements are erased.
    static T * move_construct_range(T * first, T * last, T * dest) noexcept {
        for (; first != last; ++first, ++dest) {
            ::new (static_cast<void *>(dest)) T(std::move(*first));
            first->~T();
        }
        return dest;
    }

    /// Destroys the erased elements, then moves the rest down. O(end - first).
    static T * erase_range(T * first, T * last, T * end) noexcept {
        for (T * p = first; p != last; ++p) {
            p->~T();
        }
        return first == last ? end : move_construct_range(last, end, first);
    }
};

/// Elements are copied as bytes, as those of plain types are.
template <typename T>
struct ObjValueTypeTraitsBase<T, false, true> : PodValueTypeTraits<T> {};

/// Elements are copied, which may raise.
template <typename T>
struct ObjValueTypeTraitsBase<T, false, false> : ValueTypeTraitsBase<T> {
    /// Copies the elements to raw storage at `dest`, then destroys the sources. When a copy raises,
    /// the copies are destroyed and the sources stay. The ranges must not overlap.
    static T * move_construct_range(T * first, T * last, T * dest) {
        T * built = dest;
        try {
            for (T const * p = first; p != last; ++p, ++built) {
                ::new (static_cast<void *>(built)) T(*p);
            }
        } catch (...) {
            destroy(dest, built);
            throw;
        }
        destroy(first, last);
        return built;
    }

    /// Assigns the rest over the erased elements and destroys what is left at the end. When an
    /// assignment raises, the elements before it have new values already and none is destroyed.
    static T * erase_range(T * first, T * last, T * end) {
        for (; last != end; ++first, ++last) {
            *first = *last;
        }
        destroy(first, end);
        return first;
    }

  private:
    static void destroy(T * first, T * last) noexcept {
        for (; first != last; ++first) {
            first->~T();
        }
    }
};

/// The base of the traits of all types that are not plain, with the relocation that the table names
/// for `T`. Construction is by copy, and assignment by the type's own `=`.
template <typename T>
struct ObjValueTypeTraits
    : ObjValueTypeTraitsBase<T, element_type_row<T>.relocation == eRelocation_Move,
                             element_type_row<T>.relocation != eRelocation_Copy> {
    static void construct_value(T * p, T const & v) { ::new (static_cast<void *>(p)) T(v); }

    static void assign_value(T * p, T const & v) { *p = v; }
};

/// Null has no elements, so only `type()` exists.
template <>
struct VXATTRIBUTE_API ValueTypeTraits<NullValueType> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeNull; }
};

/// False orders before true, and their hashes are 0 and 1.
template <>
struct VXATTRIBUTE_API ValueTypeTraits<bool> : PodValueTypeTraits<bool> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeBoolean; }

    /// -1, 0 or 1.
    static int compare(bool a, bool b) noexcept { return int{a} - int{b}; }

    static bool equal(bool a, bool b) noexcept { return a == b; }

    static unsigned int hash(bool a) noexcept { return a ? 1 : 0; }

    /// As "true" and "false". A text, so that width and fill of the stream apply.
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, bool const * begin, bool const * end);
};

/// The order of the numbers, all of which are 64 bits and signed.
template <>
struct VXATTRIBUTE_API ValueTypeTraits<long long> : PodValueTypeTraits<long long> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeInteger; }

    static int compare(long long a, long long b) noexcept { return a < b ? -1 : (b < a ? 1 : 0); }

    static bool equal(long long a, long long b) noexcept { return a == b; }

    /// The low 32 bits XOR the high 32 bits.
    static unsigned int hash(long long a) noexcept {
        auto const bits = static_cast<unsigned long long>(a);
        return static_cast<unsigned int>(bits) ^ static_cast<unsigned int>(bits >> 32);
    }

    /// As `<<` writes numbers: flags and locale of the stream apply.
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, long long const * begin, long long const * end);
};

/// Beware of NaN: it compares 0 with every number, so the order is not one for sorting. See
/// docs/guide/comparison.md.
template <>
struct VXATTRIBUTE_API ValueTypeTraits<double> : PodValueTypeTraits<double> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeDouble; }

    /// 0 when either side is a NaN.
    static int compare(double a, double b) noexcept { return b > a ? -1 : (a > b ? 1 : 0); }

    /// IEEE 754 equality: a NaN differs from everything, +0.0 equals -0.0.
    static bool equal(double a, double b) noexcept { return a == b; }

    /// Of the bit pattern, with the formula of Integer, so that +0.0 and -0.0 differ.
    static unsigned int hash(double a) noexcept {
        static_assert(sizeof(long long) == sizeof(double));
        long long bits;
        std::memcpy(&bits, &a, sizeof(bits));
        return ValueTypeTraits<long long>::hash(bits);
    }

    /// As `<<` writes numbers in the default floating-point environment: flags, precision and
    /// locale of the stream apply.
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, double const * begin, double const * end);
};

/// Any bytes, zeros included; no encoding is assumed except for rendering.
template <>
struct VXATTRIBUTE_API ValueTypeTraits<std::string>
    : ObjValueTypeTraitsBase<std::string, true, true> {
    /// A text to store: the stored string is built from it without a temporary. It refers to the
    /// caller's text, which must outlive it.
    struct VXATTRIBUTE_API AssignArg {
        char const * data; ///< need not end with a zero
        unsigned int size; ///< in bytes

        /// The text up to its terminator.
        ///
        /// @raises std::length_error: `text` is longer than 2^32 - 1 bytes.
        AssignArg(char const * text);

        /// `textSize` bytes, which may include zeros.
        AssignArg(char const * text, unsigned int textSize) noexcept : data(text), size(textSize) {}

        /// The whole string, whose bytes must not move meanwhile.
        ///
        /// @raises std::length_error: `text` is longer than 2^32 - 1 bytes.
        AssignArg(std::string const & text);
    };

    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeString; }

    /// Both copy the bytes and may raise std::bad_alloc. Assignment reuses the memory of the string
    /// where it suffices, and `v` may lie in that string.
    static void construct_value(std::string * p, AssignArg const & v) {
        ::new (static_cast<void *>(p)) std::string(v.data, v.size);
    }

    static void assign_value(std::string * p, AssignArg const & v) { p->assign(v.data, v.size); }

    /// By the bytes as unsigned values, a prefix first.
    static int compare(std::string const & a, std::string const & b) noexcept {
        return a.compare(b);
    }

    static bool equal(std::string const & a, std::string const & b) noexcept { return a == b; }

    /// Folds the bytes as signed values: h = h * 5 + byte. Not stored: O(size).
    static unsigned int hash(std::string const & a) noexcept;

    /// In double quotes, on one line or on lines of their own, each cut at `max_string_len` bytes
    /// but not within a UTF-8 sequence. Quotes and control characters are not escaped.
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, std::string const * begin,
                            std::string const * end);
};

} // namespace vxattribute::impl
