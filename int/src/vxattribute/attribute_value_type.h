#pragma once

#include "vxattribute/export.h"

#include <iosfwd>
#include <string>

namespace vxattribute {

/// The type of a value: null or one of the element types.
///
/// Every type has a number `eId_...` and a constant `type...`, such as `ValueTypeId::eId_Uuid` and
/// `ValueTypeId::typeUuid`. The types and their numbers are listed in element_type_table.inc:
///
///     1 Boolean  2 Integer  3 String  4 Double  5 Uuid ...    (0 is Null)
///
/// The constants are the only objects of this class; hold them by reference or pointer. The numbers
/// are stored data: they are written to streams and order values of different types. Numbers are
/// usable before any load-time code has run, names from load on.
///
///     if (value.type() == ValueTypeId::typeString) { ... }
///     switch (value.type().id()) { case ValueTypeId::eId_Uuid: ... }
///
/// Cost. Comparing types is comparing pointers or numbers; nothing here allocates. To run code per
/// element type, see `visit_elements` in elements.h.
///
/// Threads. The constants never change.
class VXATTRIBUTE_API ValueTypeId {
  public:
    /// The numbers, from 0 without gaps.
    enum EId : int {
        eId_Null = 0,

#define VX_ELEMENT_TYPE(number, Id, ...) eId_##Id = number,
#include "vxattribute/element_type_table.inc"
#undef VX_ELEMENT_TYPE
    };

    /// How many types there are, null included: one more than the greatest number.
    static constexpr int count = 1
#define VX_ELEMENT_TYPE(...) +1
#include "vxattribute/element_type_table.inc"
#undef VX_ELEMENT_TYPE
        ;

    /// The constants, one per type. References to them are valid as long as the library is loaded.
    static ValueTypeId const typeNull;
#define VX_ELEMENT_TYPE(number, Id, ...) static ValueTypeId const type##Id;
#include "vxattribute/element_type_table.inc"
#undef VX_ELEMENT_TYPE

    ValueTypeId(ValueTypeId const &) = delete;
    ValueTypeId & operator=(ValueTypeId const &) = delete;

    /// The constant with that number.
    ///
    /// @raises error.vxattribute.value.type.unknown: `id` is below 0, or `count` and above.
    /// @cost   One access to a table.
    static ValueTypeId const & from_id(EId id);

    /// The number, as written to streams.
    EId id() const noexcept {
        return m_id;
    }

    /// The name, such as "UUID", as it appears in messages and rendered text. It lives as long as
    /// the library is loaded, and may be used at the end of the process too.
    std::string const & name() const noexcept {
        return *m_name;
    }

    /// The difference of the two numbers: negative, 0 or positive. This is how values of different
    /// types are ordered.
    int compare(ValueTypeId const & other) const noexcept {
        return m_id - other.m_id;
    }

    /// True for the same type.
    bool operator==(ValueTypeId const & other) const noexcept {
        // The same object in the usual case. Two copies of the library have two objects per type.
        return this == &other || m_id == other.m_id;
    }

  private:
    /// @param name  Storage that load-time code fills: a std::string cannot be a constant.
    constexpr ValueTypeId(EId id, std::string const * name) noexcept : m_id(id), m_name(name) {}

    EId m_id;
    std::string const * m_name;
};

/// Inserts the name as a std::string is inserted: width and fill of the stream apply.
///
/// @raises What the stream raises.
VXATTRIBUTE_API std::ostream & operator<<(std::ostream & stream, ValueTypeId const & type);

namespace impl {

/// Represents the type of the null value. No element of it is ever stored.
struct NullValueType {};

/// Raises the error of `ValueTypeId::from_id` for that number.
[[noreturn]] VXATTRIBUTE_API void throw_unknown_type_id(int id);

} // namespace impl
} // namespace vxattribute
