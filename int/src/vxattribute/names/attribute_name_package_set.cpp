#include "vxattribute/attribute_name_package_set.h"

#include "vxattribute/stream/list_room_internal.h"
#include "vxserialize/reader.h"
#include "vxserialize/writer.h"

#include <algorithm>

namespace vxattribute {

AttributeNamePackageSet::AttributeNamePackageSet() noexcept = default;

AttributeNamePackageSet::AttributeNamePackageSet(Packages & packages) noexcept
    : m_packages(std::move(packages)) {}

AttributeNamePackageSet::~AttributeNamePackageSet() = default;

AttributeNamePackageSet::Ptr AttributeNamePackageSet::create() {
    return Ptr(new AttributeNamePackageSet);
}

AttributeNamePackageSet::Ptr
AttributeNamePackageSet::create(AttributeNamePackage::Ptr const & package) {
    return Composer(package).compose();
}

AttributeNamePackageSet::Ptr AttributeNamePackageSet::create(vxserialize::Reader & reader) {
    Packages packages;
    read_append_aux(packages, reader);
    return create_aux(packages);
}

AttributeNamePackageSet::Ptr
AttributeNamePackageSet::create_union(AttributeNamePackage::Ptr const & package) const {
    Packages packages = m_packages;
    if (package) {
        packages.push_back(package);
    }
    return create_aux(packages);
}

AttributeNamePackageSet::Ptr AttributeNamePackageSet::create_union(Ptr const & other) const {
    Packages packages = m_packages;
    if (other) {
        packages.insert(packages.end(), other->begin(), other->end());
    }
    return create_aux(packages);
}

AttributeNamePackageSet::Ptr
AttributeNamePackageSet::create_union(vxserialize::Reader & reader) const {
    Packages packages = m_packages;
    read_append_aux(packages, reader);
    return create_aux(packages);
}

AttributeNamePackageSet::Ptr AttributeNamePackageSet::create_aux(Packages & packages) {
    // Ordered by id, so that equal sets have equal bytes and encoders search in the same order.
    std::sort(packages.begin(), packages.end(), AttributeNamePackage::IdLess());
    packages.erase(std::unique(packages.begin(), packages.end(), AttributeNamePackage::IdEquals()),
                   packages.end());
    return Ptr(new AttributeNamePackageSet(packages));
}

void AttributeNamePackageSet::read_append_aux(Packages & packages, vxserialize::Reader & reader) {
    reader.begin_record();
    // The announced count is input, so only a limited number is reserved.
    packages.reserve(packages.size() +
                     impl::list_room(reader.begin_list(), impl::maxRoomForPackages));
    while (reader.has_next()) {
        packages.push_back(AttributeNamePackage::create(reader));
    }
    reader.end_record();
}

AttributeNamePackageSet::const_iterator
AttributeNamePackageSet::find(vxcore::Uuid const & id) const noexcept {
    return std::find_if(begin(), end(),
                        [&id](auto const & package) { return package->id() == id; });
}

AttributeNamePackageSet::const_iterator
AttributeNamePackageSet::find(AttributeName const & name) const noexcept {
    // One lookup in the index of each package, until one has the name.
    return std::find_if(begin(), end(),
                        [&name](auto const & package) { return package->count(name) != 0; });
}

bool AttributeNamePackageSet::check_duplicate_names(std::set<AttributeName> * duplicates) const {
    if (duplicates != nullptr) {
        duplicates->clear();
    }
    // Each pair of packages is compared: every name is looked up in all packages after its own.
    for (const_iterator first = begin(); first != end(); ++first) {
        for (const_iterator second = first + 1; second != end(); ++second) {
            for (AttributeName const & name : **first) {
                if ((*second)->count(name) == 0) {
                    continue;
                }
                if (duplicates == nullptr) {
                    return true;
                }
                duplicates->insert(name);
            }
        }
    }
    return duplicates != nullptr && !duplicates->empty();
}

void AttributeNamePackageSet::write(vxserialize::Writer & writer) const {
    writer.begin_record();
    writer.begin_list(size());
    for (AttributeNamePackage::Ptr const & package : m_packages) {
        if (&package != begin()) {
            writer.next_list_item();
        }
        package->write(writer);
    }
    writer.end_list();
    writer.end_record();
}

AttributeNamePackageSet::Composer &
AttributeNamePackageSet::Composer::add(AttributeNamePackage::Ptr const & package) {
    if (package) {
        m_packages.push_back(package);
    }
    return *this;
}

AttributeNamePackageSet::Composer & AttributeNamePackageSet::Composer::add(Ptr const & packages) {
    if (packages) {
        m_packages.insert(m_packages.end(), packages->begin(), packages->end());
    }
    return *this;
}

AttributeNamePackageSet::Ptr AttributeNamePackageSet::Composer::compose() const {
    Packages packages = m_packages;
    return create_aux(packages);
}

vxserialize::Writer & operator<<(vxserialize::Writer & writer,
                                 AttributeNamePackageSet::Ptr const & packages) {
    if (packages) {
        packages->write(writer);
    } else {
        writer.write_null();
    }
    return writer;
}

vxserialize::Reader & operator>>(vxserialize::Reader & reader,
                                 AttributeNamePackageSet::Ptr & packages) {
    // When reading raises, `packages` keeps its value: it is assigned last.
    if (reader.read_if_null()) {
        packages.reset();
    } else {
        packages = AttributeNamePackageSet::create(reader);
    }
    return reader;
}

} // namespace vxattribute
