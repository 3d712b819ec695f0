#include "vxmoduleregistry/module_registry.h"

#include <map>
#include <mutex>

namespace vxmoduleregistry {

namespace {

struct Registry {
    std::mutex mutex;
    std::map<std::string, std::string, std::less<>> infos;
};

/// Created on first use and never destroyed: load-time code and destructors of modules call at any
/// time.
Registry & registry() {
    static Registry & instance = *new Registry;
    return instance;
}

} // namespace

bool add_module_info(char const * name, char const * info) {
    Registry & table = registry();
    std::lock_guard const lock(table.mutex);
    return table.infos.try_emplace(name, info).second;
}

bool query_module_info(char const * name, ModuleInfo * info) {
    Registry & table = registry();
    std::lock_guard const lock(table.mutex);
    auto const found = table.infos.find(name);
    if (found == table.infos.end()) {
        return false;
    }
    info->text = found->second;
    return true;
}

bool remove_module_info(char const * name) {
    Registry & table = registry();
    std::lock_guard const lock(table.mutex);
    return table.infos.erase(name) != 0;
}

} // namespace vxmoduleregistry
