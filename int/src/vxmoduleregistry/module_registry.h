#pragma once

#include "vxmoduleregistry/export.h"

#include <string>

/// The modules of the process by name, so that loading a second copy of one is detected.
///
/// There is one table per process. It works from the first static initialiser until the process
/// ends: this library is never unloaded.
///
/// Threads. All functions may be called from any thread; each takes the one lock of the table.
///
/// Cost. O(log n) comparisons of names under the lock. A pointer to a name or info is never null.
///
///     if (!vxmoduleregistry::add_module_info("shop", "version 1.2")) {
///         // another copy of the module is loaded
///     }
namespace vxmoduleregistry {

/// A copy of what is registered about a module. Later changes of the table do not show in it.
class VXMODULEREGISTRY_API ModuleInfo {
  public:
    ModuleInfo() noexcept = default;
    ~ModuleInfo() = default;

    /// The information text; empty if nothing was registered.
    std::string text;
};

/// Registers a module. Both texts are copied.
///
/// @return false if the name is registered already; nothing changes then.
/// @raises std::bad_alloc: no memory; nothing changes.
VXMODULEREGISTRY_API bool add_module_info(char const * name, char const * info);

/// Fills `info` with what is registered under the name.
///
/// @return false if there is nothing; `info` is then unchanged.
/// @raises std::bad_alloc: no memory for the copy; `info` is then unchanged.
VXMODULEREGISTRY_API bool query_module_info(char const * name, ModuleInfo * info);

/// Removes what is registered under the name; any caller may. A module does so when it unloads.
///
/// @return false when there was nothing.
VXMODULEREGISTRY_API bool remove_module_info(char const * name);

} // namespace vxmoduleregistry
