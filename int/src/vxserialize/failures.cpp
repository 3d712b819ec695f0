#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"
#include "vxserialize/error_codes.h"
#include "vxserialize/failures_internal.h"
#include "vxserialize/limits.h"

namespace vxserialize::impl {

namespace {

char const * kind_name(EElementKind kind) {
    switch (kind) {
    case eElement_None:
        return "no element";
    case eElement_Null:
        return "null";
    case eElement_Boolean:
        return "a boolean";
    case eElement_Integer:
        return "an integer";
    case eElement_Unsigned:
        return "an unsigned integer";
    case eElement_Double:
        return "a double";
    case eElement_String:
        return "a string";
    case eElement_AbsoluteTime:
        return "an absolute time";
    case eElement_RelativeTime:
        return "a relative time";
    case eElement_Uuid:
        return "a UUID";
    case eElement_Binary:
        return "a binary block";
    case eElement_List:
        return "a list";
    case eElement_Record:
        return "a record";
    }
    return "no element";
}

} // namespace

void throw_usage(char const * function, char const * detail) {
    vxcore::ErrorComposer("Wrong use of a stream: {@detail}")
        .param("detail", detail)
        .throw_error(error::vxserialize_usage, VXCORE_LOCATION(function));
}

void throw_too_deep(char const * function) {
    vxcore::ErrorComposer("More than {@limit} lists and records are open")
        .param("limit", vxcore::to_string(max_open_containers))
        .throw_error(error::vxserialize_depth, VXCORE_LOCATION(function));
}

void throw_chain_too_long(char const * function) {
    vxcore::ErrorComposer("A chain of errors has more than {@limit} links")
        .param("limit", vxcore::to_string(max_error_chain))
        .throw_error(error::vxserialize_depth, VXCORE_LOCATION(function));
}

void throw_data(vxcore::ErrorCode const & code, char const * function, unsigned long long offset,
                char const * detail) {
    vxcore::ErrorComposer("Ill-formed serialized data at byte {@offset}: {@detail}")
        .param("offset", vxcore::to_string(offset))
        .param("detail", detail)
        .throw_error(code, VXCORE_LOCATION(function));
}

void throw_truncated(char const * function, unsigned long long offset) {
    vxcore::ErrorComposer("Serialized data ends at byte {@offset} in the middle")
        .param("offset", vxcore::to_string(offset))
        .throw_error(error::vxserialize_data_truncated, VXCORE_LOCATION(function));
}

void throw_type(char const * function, unsigned long long offset, EElementKind expected,
                EElementKind found) {
    vxcore::ErrorComposer("Expected {@expected} at byte {@offset} and found {@found}")
        .param("expected", kind_name(expected))
        .param("offset", vxcore::to_string(offset))
        .param("found", kind_name(found))
        .throw_error(error::vxserialize_data_type, VXCORE_LOCATION(function));
}

} // namespace vxserialize::impl
