#pragma once

#include "vxattribute/attribute_value_impl.h"
#include "vxcore/absolute_time.h"
#include "vxcore/error_info.h"
#include "vxcore/relative_time.h"
#include "vxcore/simple_date_time.h"
#include "vxcore/uuid.h"
#include "vxuri/uri_reference.h"

/// The rules of the element types that other libraries define: UUID, the times, URI and ErrorInfo.
/// Include this header to use them as elements of a value. See value_type_traits.h.
namespace vxattribute::impl {

template <>
struct VXATTRIBUTE_API ValueTypeTraits<vxcore::Uuid> : ObjValueTypeTraits<vxcore::Uuid> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeUuid; }

    static unsigned int hash(vxcore::Uuid const & a) noexcept;
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, vxcore::Uuid const * begin,
                            vxcore::Uuid const * end);
};

template <>
struct VXATTRIBUTE_API ValueTypeTraits<vxuri::UriReference>
    : ObjValueTypeTraits<vxuri::UriReference> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeUri; }

    /// By the text; hexadecimal digits after a "%" compare equal in either case.
    static int compare(vxuri::UriReference const & a, vxuri::UriReference const & b) noexcept;
    static bool equal(vxuri::UriReference const & a, vxuri::UriReference const & b) noexcept;
    static unsigned int hash(vxuri::UriReference const & a) noexcept;
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, vxuri::UriReference const * begin,
                            vxuri::UriReference const * end);
};

template <>
struct VXATTRIBUTE_API ValueTypeTraits<vxcore::AbsoluteTime>
    : ObjValueTypeTraits<vxcore::AbsoluteTime> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeAbsoluteTime; }

    static unsigned int hash(vxcore::AbsoluteTime const & a) noexcept;
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, vxcore::AbsoluteTime const * begin,
                            vxcore::AbsoluteTime const * end);
};

template <>
struct VXATTRIBUTE_API ValueTypeTraits<vxcore::RelativeTime>
    : ObjValueTypeTraits<vxcore::RelativeTime> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeRelativeTime; }

    static unsigned int hash(vxcore::RelativeTime const & a) noexcept;
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, vxcore::RelativeTime const * begin,
                            vxcore::RelativeTime const * end);
};

template <>
struct VXATTRIBUTE_API ValueTypeTraits<vxcore::SimpleDateTime>
    : ObjValueTypeTraits<vxcore::SimpleDateTime> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeSimpleDateTime; }

    static unsigned int hash(vxcore::SimpleDateTime const & a) noexcept;
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, vxcore::SimpleDateTime const * begin,
                            vxcore::SimpleDateTime const * end);
};

template <>
struct VXATTRIBUTE_API ValueTypeTraits<ErrorInfoPtr> : ObjValueTypeTraits<ErrorInfoPtr> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeErrorInfo; }

    /// Null orders first.
    static int compare(ErrorInfoPtr const & a, ErrorInfoPtr const & b) noexcept;
    static bool equal(ErrorInfoPtr const & a, ErrorInfoPtr const & b) noexcept;
    static unsigned int hash(ErrorInfoPtr const & a) noexcept;
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, ErrorInfoPtr const * begin,
                            ErrorInfoPtr const * end);
};

} // namespace vxattribute::impl

VXATTRIBUTE_EXTERN_ELEMENT(vxcore::Uuid);
VXATTRIBUTE_EXTERN_ELEMENT(vxuri::UriReference);
VXATTRIBUTE_EXTERN_ELEMENT(vxcore::AbsoluteTime);
VXATTRIBUTE_EXTERN_ELEMENT(vxcore::RelativeTime);
VXATTRIBUTE_EXTERN_ELEMENT(vxcore::SimpleDateTime);
VXATTRIBUTE_EXTERN_ELEMENT(vxattribute::impl::ErrorInfoPtr);
