#include "vxcore/error_composer.h"

namespace vxcore {

ErrorComposer & ErrorComposer::param(char const * name, std::string value) {
    m_params.insert_ref(SourceString(name, true)) = std::move(value);
    return *this;
}

void ErrorComposer::throw_error(ErrorCode const & code, SourceLocation location) {
    vxcore::throw_error(create(code, std::move(location)));
}

ErrorInfo::Ptr ErrorComposer::create(ErrorCode const & code, SourceLocation location,
                                     ErrorInfo::Ptr nested) {
    return ErrorInfo::create(code, std::move(m_message), std::move(m_params), std::move(location),
                             std::move(nested));
}

void ErrorComposer::create_transfer(ErrorInfo::Ptr * out, ErrorCode const & code,
                                    SourceLocation location) {
    ErrorInfo::Ptr info = create(code, std::move(location));
    if (out == nullptr) {
        vxcore::throw_error(std::move(info));
    }
    *out = std::move(info);
}

} // namespace vxcore
