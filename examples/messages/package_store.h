#pragma once

#include "protocol.h"

#include "vxcore/uuid.h"

#include <string>

namespace messages {

/// The packages that a program knows, in a folder: a list of names in a file `<id>.names` for each.
/// They are there at the next start. Versions of a package have different ids, so they live side by
/// side.
///
///     PackageStore packages("/var/lib/messages");
///     if (!packages.find(id)) { ... packages.add(package); }
class PackageStore {
  public:
    /// Reads the packages of the folder, which is created if need be. A file whose names do not
    /// have the id that it is called by is damaged: it is reported and left out.
    ///
    /// @raises std::filesystem::filesystem_error: the folder cannot be created or listed.
    explicit PackageStore(std::string folder);

    /// Null: unknown.
    AttributeNamePackage::Ptr find(vxcore::Uuid const & id) const;

    /// Writes the package to its file, then keeps it. The file appears whole or not at all.
    ///
    /// @raises std::runtime_error: there are `limit::stored_packages` already. Otherwise what
    ///         writing the file raises, also for names that no line of a file holds. The store is
    ///         then as it was.
    void add(AttributeNamePackage::Ptr const & package);

    unsigned int size() const noexcept { return m_packages->size(); }

  private:
    std::string path_of(vxcore::Uuid const & id) const;

    std::string m_folder;
    AttributeNamePackageSet::Ptr m_packages;
};

} // namespace messages
