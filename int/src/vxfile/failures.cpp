#include "vxcore/error_composer.h"
#include "vxfile/failures_internal.h"

#include <cerrno>
#include <system_error>

namespace vxfile::impl {

void throw_file(vxcore::ErrorCode const & code, char const * message, std::string const & path,
                char const * function) {
    vxcore::ErrorComposer(message).param("path", path).throw_error(code, VXCORE_LOCATION(function));
}

void throw_system(vxcore::ErrorCode const & code, char const * message, std::string const & path,
                  int reason, char const * function) {
    vxcore::ErrorComposer(message)
        .param("path", path)
        .param("reason", std::generic_category().message(reason))
        .throw_error(code, VXCORE_LOCATION(function));
}

void throw_open(std::string const & path, int reason, char const * function) {
    throw_system(reason == ENOENT ? error::vxfile_open_notFound : error::vxfile_open,
                 "{@path}: cannot be opened: {@reason}", path, reason, function);
}

void throw_content(std::string const & path, std::string reason, std::exception const * cause,
                   char const * function) {
    vxcore::SourceLocation const location = VXCORE_LOCATION(function);
    vxcore::throw_error(vxcore::ErrorComposer("{@path}: {@reason}")
                            .param("path", path)
                            .param("reason", std::move(reason))
                            .create(error::vxfile_content, location,
                                    cause == nullptr
                                        ? nullptr
                                        : vxcore::ErrorInfo::from_exception(*cause, location)));
}

std::string text_with_causes(vxcore::ErrorException const & e) {
    std::string text = e.info()->text();
    for (auto const * info = e.info()->nested().get(); info != nullptr;
         info = info->nested().get()) {
        text.append(": ").append(info->text());
    }
    return text;
}

} // namespace vxfile::impl
