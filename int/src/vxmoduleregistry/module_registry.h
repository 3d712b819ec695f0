#pragma once

#include "vxmoduleregistry/export.h"

#include <string>

/// The modules of the process by name, so that a second copy of one is noticed when it is loaded.
///
/// There is one table per process. It is good before any load-time code and until the process ends:
/// this library is never unloaded.
///
/// Threads. All functions may be called from any thread; each takes the one lock of the table.
namespace vxmoduleregistry {

/// A copy of what is registered about a module.
class VXMODULEREGISTRY_API ModuleInfo {
  public:
    ModuleInfo() noexcept = default;
    ~ModuleInfo() = default;

    /// The information text, empty when nothing was registered; ends with a terminator.
    std::string text;
};

/// Registers a module. Both texts are copied.
///
/// @return false when the name is registered already; nothing changes then.
VXMODULEREGISTRY_API bool add_module_info(char const * name, char const * info);

/// Fills `info` with what is registered under the name.
///
/// @return false when there is nothing; `info` is as it was then.
VXMODULEREGISTRY_API bool query_module_info(char const * name, ModuleInfo * info);

/// Removes what is registered under the name, whoever registered it.
///
/// @return false when there was nothing.
VXMODULEREGISTRY_API bool remove_module_info(char const * name);

} // namespace vxmoduleregistry
