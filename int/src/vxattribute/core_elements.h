#pragma once

#include "vxattribute/attribute_value_impl.h"
#include "vxcore/absolute_time.h"
#include "vxcore/error_info.h"
#include "vxcore/relative_time.h"
#include "vxcore/simple_date_time.h"
#include "vxcore/uuid.h"
#include "vxuri/uri_reference.h"

/// The rules of the element types that other libraries define: UUID, the times, URI and ErrorInfo.
/// Include this header to use them as elements of a value:
///
///     AttributeValue const timeout(vxcore::RelativeTime(50'000'000)); // 5 s in ticks of 100 ns
///     long long const ticks = timeout.get<vxcore::RelativeTime>().ticks();
///
/// value_type_traits.h describes the members that all traits have. The comments here describe what
/// is particular to a type. Where a type has no `compare` and `equal` here, they are its own `<`
/// and `==`, from the base class. Only `write_trace` may raise: what the stream raises, or
/// std::bad_alloc.
///
/// `write_trace` writes the elements as a list with the frame of `TraceFormatter::list_default`,
/// and each element as the stream operator of its type writes it. Only errors have a frame of their
/// own.
namespace vxattribute::impl {

/// Order by the 16 bytes, each unsigned. The hash folds them likewise: h = h * 5 + byte. The text
/// has lower-case digits with dashes. The default element is the UUID of zeros.
template <>
struct VXATTRIBUTE_API ValueTypeTraits<vxcore::Uuid> : ObjValueTypeTraits<vxcore::Uuid> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeUuid; }

    static unsigned int hash(vxcore::Uuid const & a) noexcept;
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, vxcore::Uuid const * begin,
                            vxcore::Uuid const * end);
};

/// Elements share their immutable text, so a copy costs one atomic count. The class has no move, so
/// a list that grows copies its elements. The default element is the undefined reference, which is
/// rendered as "<undefined>".
template <>
struct VXATTRIBUTE_API ValueTypeTraits<vxuri::UriReference>
    : ObjValueTypeTraits<vxuri::UriReference> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeUri; }

    /// -1, 0 or 1 by the bytes of the text, taken as signed, a prefix first. The two characters
    /// after a "%" compare without regard to the case of A to F. The undefined reference equals the
    /// empty one. O(size of the text), O(1) for references that share it.
    static int compare(vxuri::UriReference const & a, vxuri::UriReference const & b) noexcept;
    /// As `compare` == 0, but texts of different sizes are not compared byte by byte.
    static bool equal(vxuri::UriReference const & a, vxuri::UriReference const & b) noexcept;
    /// Folds the same bytes: equal references have equal hashes. Not stored: O(size of the text).
    static unsigned int hash(vxuri::UriReference const & a) noexcept;
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, vxuri::UriReference const * begin,
                            vxuri::UriReference const * end);
};

/// Order by the moment. The text is ISO 8601 in UTC. The default element is 1970-01-01T00:00:00Z.
template <>
struct VXATTRIBUTE_API ValueTypeTraits<vxcore::AbsoluteTime>
    : ObjValueTypeTraits<vxcore::AbsoluteTime> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeAbsoluteTime; }

    /// Of the ticks of 100 ns, with the formula of Integer.
    static unsigned int hash(vxcore::AbsoluteTime const & a) noexcept;
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, vxcore::AbsoluteTime const * begin,
                            vxcore::AbsoluteTime const * end);
};

/// Order by the length of the span, negative spans first. The text is an ISO 8601 duration. The
/// default element is 0.
template <>
struct VXATTRIBUTE_API ValueTypeTraits<vxcore::RelativeTime>
    : ObjValueTypeTraits<vxcore::RelativeTime> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeRelativeTime; }

    /// Of the ticks of 100 ns, with the formula of Integer.
    static unsigned int hash(vxcore::RelativeTime const & a) noexcept;
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, vxcore::RelativeTime const * begin,
                            vxcore::RelativeTime const * end);
};

/// Order by date and clock time; no zone is involved. The text is ISO 8601 without a zone. The
/// default element is 1970-01-01T00:00:00.
template <>
struct VXATTRIBUTE_API ValueTypeTraits<vxcore::SimpleDateTime>
    : ObjValueTypeTraits<vxcore::SimpleDateTime> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeSimpleDateTime; }

    /// Of the ticks of 100 ns, with the formula of Integer.
    static unsigned int hash(vxcore::SimpleDateTime const & a) noexcept;
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, vxcore::SimpleDateTime const * begin,
                            vxcore::SimpleDateTime const * end);
};

/// An element is a counted pointer to an immutable error, or null. Null is the default element.
template <>
struct VXATTRIBUTE_API ValueTypeTraits<ErrorInfoPtr> : ObjValueTypeTraits<ErrorInfoPtr> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeErrorInfo; }

    /// By code, message, parameters and then the nested chain; the location does not count. Null
    /// comes first.
    static int compare(ErrorInfoPtr const & a, ErrorInfoPtr const & b) noexcept;
    /// As `compare` == 0: two errors are equal by content, not by address.
    static bool equal(ErrorInfoPtr const & a, ErrorInfoPtr const & b) noexcept;
    /// 0 for null. Not stored: O(length of all texts of the chain).
    static unsigned int hash(ErrorInfoPtr const & a) noexcept;
    /// With the frame of `TraceFormatter::list_error_info`. Each line of an error is on a line of
    /// its own; a null element is written as `error_info_null`.
    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, ErrorInfoPtr const * begin,
                            ErrorInfoPtr const * end);
};

} // namespace vxattribute::impl

// The library instantiates the templates of these types: see attribute_value_impl.h.
VXATTRIBUTE_EXTERN_ELEMENT(vxcore::Uuid);
VXATTRIBUTE_EXTERN_ELEMENT(vxuri::UriReference);
VXATTRIBUTE_EXTERN_ELEMENT(vxcore::AbsoluteTime);
VXATTRIBUTE_EXTERN_ELEMENT(vxcore::RelativeTime);
VXATTRIBUTE_EXTERN_ELEMENT(vxcore::SimpleDateTime);
VXATTRIBUTE_EXTERN_ELEMENT(vxattribute::impl::ErrorInfoPtr);
