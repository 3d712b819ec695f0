#pragma once

#include "vxattribute/attribute_name_coder.h"
#include "vxattribute/attribute_name_package_set.h"

namespace vxattribute {

/// Writes names of shared packages as small numbers, and all other names as they are.
///
/// A name's number, its token, is its position in the package plus a base that this stream gives to
/// the package: 0 to the package that is used first, then one range behind the other. The first
/// name of a package brings the package's id, base and size with it, unless
/// `write_encoder_mappings` has written them all. A reader needs the same packages, not the same
/// set. docs/formats/names.md tells the form.
///
///     AttributeNameEncoder encoder(AttributeNamePackageSet::create(package));
///     map.write(writer, encoder);
///
/// Cost. One hash lookup per name and package in use; the rest of the set is searched only while
/// packages in it are not in use.
///
/// One encoder serves one stream and one thread: a second stream would have tokens whose references
/// stand in the first. A failed write leaves the encoder as it was but the stream in the middle of
/// something, so both are spent.
class VXATTRIBUTE_API AttributeNameEncoder final : public IAttributeNameEncoder {
  public:
    /// @param packages  May be null: every name is written as it is then.
    explicit AttributeNameEncoder(AttributeNamePackageSet::Ptr packages) noexcept;
    AttributeNameEncoder(AttributeNameEncoder const &);
    AttributeNameEncoder & operator=(AttributeNameEncoder const &);
    ~AttributeNameEncoder();

    AttributeNamePackageSet::Ptr const & package_set() const noexcept VXCORE_LIFETIMEBOUND {
        return m_packageSet;
    }

    /// Gives a base to every package of the set that has none and writes the whole table. Before
    /// the first name or later; again gives the same table again.
    void write_encoder_mappings(vxserialize::Writer & writer) override;

    void write_attribute_name(vxserialize::Writer & writer, AttributeName const & name) override;

  private:
    /// A package in use; the set keeps it alive.
    struct PackageMapping {
        AttributeNamePackage const * package;
        unsigned int base; // the token of its first name
    };

    using Mappings = std::vector<PackageMapping>;

    static unsigned int next_base(Mappings const & mappings) noexcept;
    bool is_all_mapped() const noexcept;
    bool write_new_package(vxserialize::Writer & writer, AttributeName const & name);

    AttributeNamePackageSet::Ptr m_packageSet;
    Mappings m_mappings; // ranges side by side, from 0 on
};

} // namespace vxattribute
