#include "vxcore/error_exception.h"

#include <stdexcept>

namespace vxcore {

ErrorException::ErrorException(ErrorInfo::Ptr info) noexcept : m_info(std::move(info)) {}

ErrorException::~ErrorException() = default;

void ErrorException::throw_error(ErrorInfo::Ptr info) {
    if (!info) {
        throw std::invalid_argument("vxcore::ErrorException::throw_error(): no info");
    }
    throw ErrorException(std::move(info));
}

char const * ErrorException::what() const noexcept {
    // The text was filled when the info was created, so nothing is allocated here.
    return m_info->text().c_str();
}

void throw_error(ErrorCode const & code, SourceString message, SourceLocation location) {
    throw_error(ErrorInfo::create(code, std::move(message), ErrorParams(), std::move(location)));
}

void throw_error(ErrorInfo::Ptr info) {
    ErrorException::throw_error(std::move(info));
}

void throw_with_nested_exception(ErrorCode const & code, SourceString message,
                                 SourceLocation location, std::exception const & e) {
    ErrorInfo::Ptr nested = ErrorInfo::from_exception(e, location); // before it is moved from
    throw_error(ErrorInfo::create(code, std::move(message), ErrorParams(), std::move(location),
                                  std::move(nested)));
}

} // namespace vxcore
