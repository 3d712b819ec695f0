#pragma once

namespace vxattribute::impl {

/// What this copy of the library says about itself: a marker line, then XML. Made by the build.
extern char const moduleInformation[];

/// Enters this copy of the library into the table of the process's modules, and takes it out.
///
/// When another copy is there already, two sets of types and singletons would meet in one process:
/// both are shown on standard error and the process is stopped, unless the environment variable
/// ZEMO_MODULEREGISTRY_DONT_FAIL_ON_DUPLICATES is set, to whatever value.
class ModuleRegistrar {
  public:
    ModuleRegistrar();
    ModuleRegistrar(ModuleRegistrar const &) = delete;
    ModuleRegistrar & operator=(ModuleRegistrar const &) = delete;

    /// Removes the entry, also when it is the other copy's.
    ~ModuleRegistrar();
};

} // namespace vxattribute::impl
