#include "vxattr/failure.h"

#include "vxattr/visible_text.h"
#include "vxcore/error_exception.h"
#include "vxfile/error_codes.h"

namespace vxattr {

Failure::Failure(std::string_view place, std::string_view what)
    : Failure(visible(place) + ": " + visible(what)) {}

Failure::Failure(std::string const & what) : std::runtime_error(what) {}

std::string message_of(std::exception const & e) {
    auto const * const known = dynamic_cast<vxcore::ErrorException const *>(&e);
    if (known == nullptr) {
        return visible(e.what());
    }
    auto const * info = known->info().get();
    std::string text = info->text();
    while (info->nested() && !info->matches(vxfile::error::vxfile)) { // those have their causes
        info = info->nested().get();
        text += ": " + info->text();
    }
    return visible(text);
}

void throw_failure(std::string_view place, std::exception const & e) {
    auto const * const known = dynamic_cast<vxcore::ErrorException const *>(&e);
    if (known != nullptr && known->info()->matches(vxfile::error::vxfile)) {
        throw Failure(message_of(e));
    }
    throw Failure(place, message_of(e));
}

} // namespace vxattr
