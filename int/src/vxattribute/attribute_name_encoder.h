#pragma once

#include "vxattribute/attribute_name_coder.h"
#include "vxattribute/attribute_name_package_set.h"

namespace vxattribute {

namespace impl {
template <typename Sink>
class ValueWriter;
}

/// Writes names of shared packages as small numbers, and all other names as they are.
///
/// The number of a name is called its token: its position in the package, plus the base of the
/// package in this stream. The package used first has base 0; each later one starts where the range
/// of the previous one ends. The first name of a package is written together with the package's id,
/// base and size, unless `write_encoder_mappings` has written them all. A reader needs the same
/// packages, not the same set. docs/formats/names.md describes the form.
///
/// The bases depend on the order in which names come, and that is map order by default: see
/// `StreamOptions::sorted_names` for bytes that are the same in every process.
///
///     AttributeNameEncoder encoder(AttributeNamePackageSet::create(package));
///     map.write(writer, encoder);
///
/// Cost. One hash lookup per name and package in use. The rest of the set is searched too, until
/// all of its packages are in use.
///
/// One encoder serves one stream and one thread: in a second stream the references would be
/// missing. A failed write leaves the encoder as it was but the stream incomplete, so neither can
/// be used again.
class VXATTRIBUTE_API AttributeNameEncoder final : public IAttributeNameEncoder {
  public:
    /// @param packages  When null, every name is written as it is.
    explicit AttributeNameEncoder(AttributeNamePackageSet::Ptr packages) noexcept;

    /// A copy has the bases assigned so far.
    AttributeNameEncoder(AttributeNameEncoder const &);
    AttributeNameEncoder & operator=(AttributeNameEncoder const &);
    ~AttributeNameEncoder();

    /// The packages to use; may be null.
    AttributeNamePackageSet::Ptr const & package_set() const noexcept VXCORE_LIFETIMEBOUND {
        return m_packageSet;
    }

    /// Assigns a base to each package of the set that has none, then writes the table of all
    /// packages. May be called before the first name or later; a second call writes the same table.
    /// When it raises, no base is assigned.
    void write_encoder_mappings(vxserialize::Writer & writer) override;

    /// Writes the token of a name, or the name itself when no package has it. A name that several
    /// packages have is taken from the one in use longest, otherwise from the first of the set.
    void write_attribute_name(vxserialize::Writer & writer, AttributeName const & name) override;

  private:
    template <typename Sink>
    friend class impl::ValueWriter;

    /// A package in use, owned by the set.
    struct PackageMapping {
        AttributeNamePackage const * package;
        unsigned int base; // the token of its first name
    };

    using Mappings = std::vector<PackageMapping>;

    static unsigned int next_base(Mappings const & mappings) noexcept;
    bool is_all_mapped() const noexcept;

    /// Sets `token` for a name of a package in use. Returns false for any other name.
    bool find_token(AttributeName const & name, unsigned int & token) const noexcept {
        for (auto const & [package, base] : m_mappings) {
            if (unsigned int const position = package->position_of(name);
                position != impl::NameIndex::sm_none) {
                token = base + position;
                return true;
            }
        }
        return false;
    }

    /// Writes a name that no package in use has.
    void write_other_name(vxserialize::Writer & writer, AttributeName const & name);
    bool write_new_package(vxserialize::Writer & writer, AttributeName const & name);

    AttributeNamePackageSet::Ptr m_packageSet;
    Mappings m_mappings; // adjacent ranges, the first from 0
};

} // namespace vxattribute
