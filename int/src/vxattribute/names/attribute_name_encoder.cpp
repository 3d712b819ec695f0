#include "vxattribute/attribute_name_encoder.h"

#include "vxserialize/writer.h"

#include <algorithm>

namespace vxattribute {

namespace {

void write_package_ref(vxserialize::Writer & writer, AttributeNamePackage const & package,
                       unsigned int base) {
    writer << package.id() << base << package.size();
}

} // namespace

AttributeNameEncoder::AttributeNameEncoder(AttributeNamePackageSet::Ptr packages) noexcept
    : m_packageSet(std::move(packages)) {}

AttributeNameEncoder::AttributeNameEncoder(AttributeNameEncoder const &) = default;

/// The mappings point into the packages of the set, so both are replaced together or not at all.
AttributeNameEncoder & AttributeNameEncoder::operator=(AttributeNameEncoder const & other) {
    Mappings mappings = other.m_mappings;
    m_packageSet = other.m_packageSet;
    m_mappings.swap(mappings);
    return *this;
}

AttributeNameEncoder::~AttributeNameEncoder() = default;

unsigned int AttributeNameEncoder::next_base(Mappings const & mappings) noexcept {
    return mappings.empty() ? 0 : mappings.back().base + mappings.back().package->size();
}

// Each package of the set has at most one mapping, so it is enough to compare the numbers.
bool AttributeNameEncoder::is_all_mapped() const noexcept {
    return !m_packageSet || m_mappings.size() >= m_packageSet->size();
}

void AttributeNameEncoder::write_encoder_mappings(vxserialize::Writer & writer) {
    // Extended aside: the mappings are adopted only when the whole table has been written.
    Mappings mappings = m_mappings;
    if (!is_all_mapped()) {
        mappings.reserve(m_packageSet->size());
        for (AttributeNamePackage::Ptr const & package : *m_packageSet) {
            bool const isMapped = std::any_of(
                m_mappings.begin(), m_mappings.end(),
                [&package](PackageMapping const & m) { return m.package == package.get(); });
            if (!isMapped) {
                mappings.push_back({package.get(), next_base(mappings)});
            }
        }
    }
    writer.begin_record();
    writer.begin_list(static_cast<unsigned int>(mappings.size()));
    for (PackageMapping const & mapping : mappings) {
        if (&mapping != mappings.data()) {
            writer.next_list_item();
        }
        write_package_ref(writer, *mapping.package, mapping.base);
    }
    writer.end_list();
    writer.end_record();
    m_mappings.swap(mappings);
}

void AttributeNameEncoder::write_attribute_name(vxserialize::Writer & writer,
                                                AttributeName const & name) {
    // Packages in use come first: a name of several packages must not cause another reference.
    unsigned int token = 0;
    if (find_token(name, token)) {
        writer.write_uint(token);
    } else {
        write_other_name(writer, name);
    }
}

void AttributeNameEncoder::write_other_name(vxserialize::Writer & writer,
                                            AttributeName const & name) {
    if (is_all_mapped() || !write_new_package(writer, name)) {
        name.write(writer);
    }
}

/// Writes a reference to the first package of the set that has the name, then the token. Packages
/// in use have been searched before, so this finds a new one.
bool AttributeNameEncoder::write_new_package(vxserialize::Writer & writer,
                                             AttributeName const & name) {
    auto const found = m_packageSet->find(name);
    if (found == m_packageSet->end()) {
        return false;
    }
    AttributeNamePackage const & package = **found;
    unsigned int const base = next_base(m_mappings);
    m_mappings.push_back({&package, base}); // first: a written reference cannot be undone
    try {
        write_package_ref(writer, package, base);
        writer << base + static_cast<unsigned int>(package.find(name) - package.begin());
    } catch (...) {
        m_mappings.pop_back();
        throw;
    }
    return true;
}

} // namespace vxattribute
