#include "vxcore/type_name.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>

namespace vxcore {

std::string type_name(std::type_info const & type) {
    int status = 0;
    // The text comes from malloc; null if the name cannot be demangled.
    std::unique_ptr<char, decltype(&std::free)> const readable(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
    return readable ? readable.get() : type.name();
}

} // namespace vxcore
