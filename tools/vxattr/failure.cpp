#include "vxattr/failure.h"

#include "vxattr/visible_text.h"
#include "vxcore/error_exception.h"

namespace vxattr {

Failure::Failure(std::string_view place, std::string_view what)
    : std::runtime_error(visible(place) + ": " + visible(what)) {}

std::string message_of(std::exception const & e) {
    auto const * const known = dynamic_cast<vxcore::ErrorException const *>(&e);
    if (known == nullptr) {
        return visible(e.what());
    }
    std::string text = known->info()->text();
    for (auto const * info = known->info()->nested().get(); info != nullptr;
         info = info->nested().get()) {
        text += ": " + info->text();
    }
    return visible(text);
}

} // namespace vxattr
