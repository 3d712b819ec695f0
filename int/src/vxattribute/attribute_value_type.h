#pragma once

#include "vxattribute/export.h"

#include <iosfwd>
#include <string>

namespace vxattribute {

/// The type of a value: one of fifteen, numbered 0 to 14.
///
/// The only objects of this class are the constants below; hold them by reference or pointer. The
/// numbers are stored data: they go on the wire and order values of different types. Ids are good
/// before any load-time code has run, names from load on.
class VXATTRIBUTE_API ValueTypeId {
  public:
    enum EId : int {
        eId_Null = 0,
        eId_Boolean = 1,
        eId_Integer = 2,
        eId_String = 3,
        eId_Double = 4,
        eId_Uuid = 5,
        eId_Uri = 6,
        eId_AbsoluteTime = 7,
        eId_RelativeTime = 8,
        eId_SimpleDateTime = 9,
        eId_Binary = 10,
        eId_Serialized = 11,
        eId_AttributeMap = 12,
        eId_Secured = 13,
        eId_ErrorInfo = 14,
    };

    static ValueTypeId const typeNull;
    static ValueTypeId const typeBoolean;
    static ValueTypeId const typeInteger;
    static ValueTypeId const typeString;
    static ValueTypeId const typeDouble;
    static ValueTypeId const typeUuid;
    static ValueTypeId const typeUri;
    static ValueTypeId const typeAbsoluteTime;
    static ValueTypeId const typeRelativeTime;
    static ValueTypeId const typeSimpleDateTime;
    static ValueTypeId const typeBinary;
    static ValueTypeId const typeSerialized;
    static ValueTypeId const typeAttributeMap;
    static ValueTypeId const typeSecured;
    static ValueTypeId const typeErrorInfo;

    ValueTypeId(ValueTypeId const &) = delete;
    ValueTypeId & operator=(ValueTypeId const &) = delete;

    /// The constant of that number.
    ///
    /// @raises error.vxattribute.value.type.unknown: `id` is not in 0 to 14.
    static ValueTypeId const & from_id(EId id);

    EId id() const noexcept { return m_id; }

    std::string const & name() const noexcept { return *m_name; }

    /// The difference of the two numbers.
    int compare(ValueTypeId const & other) const noexcept { return m_id - other.m_id; }

    bool operator==(ValueTypeId const & other) const noexcept {
        // One object per type is the rule; the ids settle it should a process hold two copies.
        return this == &other || m_id == other.m_id;
    }

  private:
    /// @param name  Storage that load-time code fills: a std::string is no constant.
    constexpr ValueTypeId(EId id, std::string const * name) noexcept : m_id(id), m_name(name) {}

    EId m_id;
    std::string const * m_name;
};

/// Inserts the name as any string is inserted.
VXATTRIBUTE_API std::ostream & operator<<(std::ostream & stream, ValueTypeId const & type);

namespace impl {

/// Stands for the type of the null value; no element of it is ever stored.
struct NullValueType {};

/// Raises the error of `ValueTypeId::from_id` for that number.
[[noreturn]] VXATTRIBUTE_API void throw_unknown_type_id(int id);

} // namespace impl
} // namespace vxattribute
