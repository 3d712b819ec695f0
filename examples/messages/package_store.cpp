#include "package_store.h"

#include "log.h"

#include "vxfile/name_list_file.h"

#include <filesystem>
#include <stdexcept>

namespace messages {

PackageStore::PackageStore(std::string folder) : m_folder(std::move(folder)) {
    std::filesystem::create_directories(m_folder);
    AttributeNamePackageSet::Composer found;
    for (auto const & entry : std::filesystem::directory_iterator(m_folder)) {
        if (entry.path().extension() != ".names") {
            continue; // a file that a dead writer has left, for example
        }
        try {
            auto const package = vxfile::read_name_list_file(entry.path().string());
            if (entry.path() != path_of(package->id())) {
                throw std::runtime_error(entry.path().string() + ": other names than its id says");
            }
            found.add(package);
        } catch (std::exception const & e) {
            log("packages", explain(e));
        }
    }
    m_packages = found.compose();
}

AttributeNamePackage::Ptr PackageStore::find(vxcore::Uuid const & id) const {
    auto const found = m_packages->find(id);
    return found == m_packages->end() ? nullptr : *found;
}

void PackageStore::add(AttributeNamePackage::Ptr const & package) {
    if (size() >= limit::stored_packages) {
        throw std::runtime_error("there is no room for more packages");
    }
    auto const packages = m_packages->create_union(package);
    std::string const path = path_of(package->id());
    vxfile::write_name_list_file(path, *package);
    m_packages = packages;
}

std::string PackageStore::path_of(vxcore::Uuid const & id) const {
    return (std::filesystem::path(m_folder) / (id.as_string() + ".names")).string();
}

} // namespace messages
