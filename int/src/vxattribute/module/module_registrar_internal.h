#pragma once

namespace vxattribute::impl {

/// Describes this copy of the library: a marker line, then XML. The build generates it.
extern char const moduleInformation[];

/// Registers this copy of the library with the process. The destructor removes the entry.
///
/// A second copy would bring a second set of types and singletons into the process. If one is
/// registered already, the constructor prints both descriptions to standard error and aborts,
/// unless the environment variable ZEMO_MODULEREGISTRY_DONT_FAIL_ON_DUPLICATES is set to any value.
class ModuleRegistrar {
  public:
    ModuleRegistrar();
    ModuleRegistrar(ModuleRegistrar const &) = delete;
    ModuleRegistrar & operator=(ModuleRegistrar const &) = delete;

    /// Removes the entry, even if the other copy made it.
    ~ModuleRegistrar();
};

} // namespace vxattribute::impl
