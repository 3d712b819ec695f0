#include "vxattribute/module/module_registrar_internal.h"
#include "vxmoduleregistry/module_registry.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace vxattribute::impl {

namespace {

constexpr char const moduleName[] = "vxattribute";

void write(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stderr);
}

/// Locks the stream, so that the output of other threads is not mixed in. The texts are written as
/// data and never used as a format.
void report_duplicate(std::string_view registered, std::string_view own) {
    flockfile(stderr);
    write("ModuleRegistry: Module vxattribute is already loaded into this process!\n");
    write("This is typically caused by a version or debug/release mismatch between libraries "
          "referenced by this process.\n");
    write("Data of module that was already registered:\n");
    write(registered);
    write("\nData of new module that conflicts:\n");
    write(own);
    write("\n\nAborting...\n");
    funlockfile(stderr);
}

} // namespace

ModuleRegistrar::ModuleRegistrar() {
    char const * const info = std::strchr(moduleInformation, '<'); // after the marker line
    if (vxmoduleregistry::add_module_info(moduleName, info)) {
        return;
    }
    vxmoduleregistry::ModuleInfo registered;
    vxmoduleregistry::query_module_info(moduleName, &registered);
    report_duplicate(registered.text, info);
    if (std::getenv("ZEMO_MODULEREGISTRY_DONT_FAIL_ON_DUPLICATES") == nullptr) {
        std::abort();
    }
}

ModuleRegistrar::~ModuleRegistrar() {
    vxmoduleregistry::remove_module_info(moduleName);
}

} // namespace vxattribute::impl
