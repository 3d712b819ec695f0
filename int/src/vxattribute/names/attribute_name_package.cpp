#include "vxattribute/attribute_name_package.h"

#include "vxattribute/error_codes.h"
#include "vxattribute/stream/list_room_internal.h"
#include "vxcore/error_composer.h"
#include "vxcrypto/md5_context.h"
#include "vxserialize/reader.h"
#include "vxserialize/writer.h"

#include <algorithm>
#include <stdexcept>

namespace vxattribute {

namespace {

/// The order of names in a package. Positions are stored in streams, so it must be the same in
/// every process, unlike map order.
bool less_by_bytes(AttributeName const & a, AttributeName const & b) noexcept {
    return a.value() < b.value();
}

impl::NameIndex make_index(std::vector<AttributeName> const & names) {
    impl::NameIndex index(names.size());
    for (unsigned int position = 0; position < names.size(); ++position) {
        if (!index.insert(names.data(), position)) {
            vxcore::ErrorComposer(
                "Attempt to add duplicate attribute name ({@attributeName}) to package.")
                .param("attributeName", names[position].value())
                .throw_error(error::vxattribute_name_package_duplicateName,
                             VXCORE_LOCATION("vxattribute::AttributeNamePackage::create()"));
        }
    }
    return index;
}

[[noreturn]] void throw_not_sorted(vxcore::Uuid const & id) {
    vxcore::ErrorComposer("Names in deserialized package (id: {@packageId}) are not sorted")
        .param("packageId", id.as_string(0))
        .throw_error(error::vxattribute_name_package_serialization,
                     VXCORE_LOCATION("vxattribute::AttributeNamePackage::create()"));
}

[[noreturn]] void throw_id_mismatch(vxcore::Uuid const & id, vxcore::Uuid const & expected) {
    vxcore::ErrorComposer("Mismatch of deserialized package identifier ({@packageId}) and computed "
                          "ID ({@packageIdExpected})")
        .param("packageId", id.as_string(0))
        .param("packageIdExpected", expected.as_string(0))
        .throw_error(error::vxattribute_name_package_serialization,
                     VXCORE_LOCATION("vxattribute::AttributeNamePackage::create()"));
}

/// Digests a number as 8 bytes, the highest first.
void update_number(vxcrypto::Md5Context & digest, unsigned long long number) {
    unsigned char bytes[8];
    for (unsigned char & byte : bytes) {
        byte = static_cast<unsigned char>(number >> 56);
        number <<= 8;
    }
    digest.update(bytes, sizeof bytes);
}

} // namespace

AttributeNamePackage::AttributeNamePackage(vxcore::Uuid const & id,
                                           std::vector<AttributeName> & names,
                                           impl::NameIndex & index) noexcept
    : m_id(id), m_names(std::move(names)), m_index(std::move(index)) {}

AttributeNamePackage::~AttributeNamePackage() = default;

AttributeNamePackage::Ptr AttributeNamePackage::create(std::vector<AttributeName> names) {
    return create_aux(names);
}

AttributeNamePackage::Ptr AttributeNamePackage::create(std::set<AttributeName> const & names) {
    std::vector<AttributeName> list(names.begin(), names.end());
    return create_aux(list);
}

AttributeNamePackage::Ptr AttributeNamePackage::create_aux(std::vector<AttributeName> & names) {
    std::sort(names.begin(), names.end(), less_by_bytes);
    impl::NameIndex index = make_index(names);
    vxcore::Uuid const id = compute_id(names);
    return Ptr(new AttributeNamePackage(id, names, index));
}

AttributeNamePackage::Ptr AttributeNamePackage::create(vxserialize::Reader & reader) {
    vxcore::Uuid id;
    std::vector<AttributeName> names;
    reader.begin_record();
    reader >> id;
    names.reserve(impl::list_room(reader.begin_list(), impl::maxRoomForNames));
    while (reader.has_next()) {
        names.emplace_back().read(reader);
    }
    reader.end_record();

    // Equal names pass this check; they are reported as duplicates below, after the id is checked.
    if (!std::is_sorted(names.begin(), names.end(), less_by_bytes)) {
        throw_not_sorted(id);
    }
    if (vxcore::Uuid const expected = compute_id(names); id != expected) {
        throw_id_mismatch(id, expected);
    }
    impl::NameIndex index = make_index(names);
    return Ptr(new AttributeNamePackage(id, names, index));
}

/// MD5 over the number of names, then over the size and the bytes of each. Sizes are included so
/// that lists which differ only in where a name ends have different ids. Two bit fields are set as
/// in a UUID made from a name, but the version goes into byte 7, the low byte of its field, instead
/// of byte 6. Stored ids depend on it.
vxcore::Uuid AttributeNamePackage::compute_id(std::vector<AttributeName> const & names) {
    vxcrypto::Md5Context digest;
    update_number(digest, names.size());
    for (AttributeName const & name : names) {
        update_number(digest, name.size());
        digest.update(name.data(), name.size());
    }
    vxcore::Uuid::BinaryData bytes;
    digest.final(bytes.data());
    bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3F) | 0x80);
    bytes[7] = static_cast<unsigned char>((bytes[7] & 0x0F) | 0x40);
    return vxcore::Uuid(bytes);
}

void AttributeNamePackage::write(vxserialize::Writer & writer) const {
    writer.begin_record();
    writer << m_id;
    writer.begin_list(size());
    for (AttributeName const & name : m_names) {
        if (&name != begin()) {
            writer.next_list_item();
        }
        name.write(writer);
    }
    writer.end_list();
    writer.end_record();
}

void AttributeNamePackage::throw_out_of_range() {
    throw std::out_of_range("vxattribute::AttributeNamePackage");
}

AttributeNamePackage::Composer & AttributeNamePackage::Composer::add(AttributeName const & name) {
    m_names.insert(name);
    return *this;
}

AttributeNamePackage::Composer & AttributeNamePackage::Composer::add(Ptr const & package) {
    if (package) {
        // Copied first: moving the nodes over cannot fail halfway.
        std::set<AttributeName> names(package->begin(), package->end());
        m_names.merge(names);
    }
    return *this;
}

vxserialize::Writer & operator<<(vxserialize::Writer & writer,
                                 AttributeNamePackage::Ptr const & package) {
    if (package) {
        package->write(writer);
    } else {
        writer.write_null();
    }
    return writer;
}

vxserialize::Reader & operator>>(vxserialize::Reader & reader,
                                 AttributeNamePackage::Ptr & package) {
    if (reader.read_if_null()) {
        package.reset();
    } else {
        package = AttributeNamePackage::create(reader);
    }
    return reader;
}

} // namespace vxattribute
