#include "vxattribute/attribute_name_decoder.h"

#include "vxattribute/error_codes.h"
#include "vxattribute/stream/list_room_internal.h"
#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"
#include "vxserialize/reader.h"

#include <algorithm>

namespace vxattribute {

namespace {

[[noreturn]] void throw_bad_ref(vxcore::ErrorCode const & code, char const * message,
                                vxcore::Uuid const & id) {
    vxcore::ErrorComposer(message)
        .param("packageId", id.as_string(0)) // as `<<` writes it
        .throw_error(code,
                     VXCORE_LOCATION("vxattribute::AttributeNameDecoder::read_package_ref()"));
}

[[noreturn]] void throw_unknown_index(unsigned int token) {
    vxcore::ErrorComposer("No attribute name package reference for attribute name token {@index}")
        .param("index", vxcore::to_string(token))
        .throw_error(error::vxattribute_name_decoder_unknownIndex,
                     VXCORE_LOCATION("vxattribute::AttributeNameDecoder::read_attribute_name()"));
}

} // namespace

AttributeNameDecoder::AttributeNameDecoder(AttributeNamePackageSet::Ptr packages,
                                           bool failOnUnknownPackage) noexcept
    : m_packageSet(std::move(packages)), m_failOnUnknownPackage(failOnUnknownPackage) {}

AttributeNameDecoder::AttributeNameDecoder(AttributeNameDecoder const &) = default;

/// The references point into the packages of the set, so both are replaced together or not at all.
AttributeNameDecoder & AttributeNameDecoder::operator=(AttributeNameDecoder const & other) {
    std::vector<PackageRef> refs = other.m_packageRefs;
    m_packageSet = other.m_packageSet;
    m_failOnUnknownPackage = other.m_failOnUnknownPackage;
    m_packageRefs.swap(refs);
    m_lastRef = other.m_lastRef;
    return *this;
}

AttributeNameDecoder::~AttributeNameDecoder() = default;

void AttributeNameDecoder::read_decoder_mappings(vxserialize::Reader & reader) {
    std::vector<PackageRef> refs;
    reader.begin_record();
    refs.reserve(impl::list_room(reader.begin_list(), impl::maxRoomForPackages));
    while (reader.has_next()) {
        read_package_ref(reader, refs);
    }
    reader.end_record();
    m_packageRefs.swap(refs);
}

AttributeName AttributeNameDecoder::read_attribute_name(vxserialize::Reader & reader) {
    vxserialize::EElementKind const kind = reader.next_type();
    if (kind == vxserialize::eElement_Uuid) {
        read_package_ref(reader, m_packageRefs);
    } else if (kind != vxserialize::eElement_Unsigned) {
        return AttributeName(reader.read_string_key());
    }
    return name_of(reader.read_uint());
}

/// Makes the reference that covers the token the last one. Ranges ascend and do not overlap, so
/// only the last one that begins at or before the token can cover it.
void AttributeNameDecoder::find_ref(unsigned int token) {
    auto const next =
        std::upper_bound(m_packageRefs.begin(), m_packageRefs.end(), token,
                         [](unsigned int t, PackageRef const & ref) { return t < ref.base; });
    if (next == m_packageRefs.begin() || !next[-1].covers(token)) {
        throw_unknown_index(token);
    }
    m_lastRef = static_cast<std::size_t>(next - m_packageRefs.begin()) - 1;
}

/// The name of a token of an unknown package: the same wherever this id and position come again.
AttributeName AttributeNameDecoder::generated_name(PackageRef const & ref, unsigned int token) {
    return AttributeName(ref.id.as_string(1) + ":" + vxcore::to_string(token - ref.base));
}

void AttributeNameDecoder::read_package_ref(vxserialize::Reader & reader,
                                            std::vector<PackageRef> & refs) const {
    PackageRef ref{};
    try {
        reader >> ref.id >> ref.base >> ref.size;
    } catch (std::exception const & e) {
        vxcore::throw_with_nested_exception(
            error::vxattribute_name_decoder_packageRef_invalid,
            vxcore::SourceString("Error reading package reference", true),
            VXCORE_LOCATION("vxattribute::AttributeNameDecoder::read_package_ref()"), e);
    }
    // Ranges must ascend for `ref_of`. In 64 bits: the end of a range may be 2^32 or above.
    if (!refs.empty() &&
        ref.base < static_cast<unsigned long long>(refs.back().base) + refs.back().size) {
        throw_bad_ref(error::vxattribute_name_decoder_packageRef_invalid,
                      "Invalid index range in package reference.  PackageId: {@packageId}", ref.id);
    }
    if (m_packageSet) {
        auto const found = m_packageSet->find(ref.id);
        if (found != m_packageSet->end()) {
            ref.package = found->get();
            // With equal sizes, every token that the range covers is a position of the package.
            if (ref.size != ref.package->size()) {
                throw_bad_ref(error::vxattribute_name_decoder_packageRef_invalid,
                              "Package size mismatch in package reference.  PackageId: "
                              "{@packageId}",
                              ref.id);
            }
        } else if (m_failOnUnknownPackage) {
            throw_bad_ref(error::vxattribute_name_decoder_packageRef_unknown,
                          "Reference to unknown attribute name package.  PackageId: {@packageId}",
                          ref.id);
        }
    }
    refs.push_back(ref);
}

} // namespace vxattribute
