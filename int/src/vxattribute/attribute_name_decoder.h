#pragma once

#include "vxattribute/attribute_name_coder.h"
#include "vxattribute/attribute_name_package_set.h"

namespace vxattribute {

/// Reads names that an AttributeNameEncoder wrote.
///
/// A stream tells which packages it uses. A package that is not at hand is no obstacle unless the
/// decoder is told so: its names come out as the 32 digits of its id, a colon and the position, and
/// the names of different positions differ.
///
///     AttributeNameDecoder decoder(AttributeNamePackageSet::create(package), true);
///     AttributeMap const map(reader, decoder);
///
/// Cost. A token that falls to the same package as the last one takes one comparison and one count;
/// another one a binary search of the references. No name of a package at hand is interned.
///
/// Errors, beside those of the reader. After any of them the decoder and its stream are spent.
/// - error.vxattribute.name.decoder.unknownIndex: no reference covers a token.
/// - error.vxattribute.name.decoder.packageRef.invalid: a reference cannot be read, begins before
///   the end of the one before it, or tells another size than that of the package at hand.
/// - error.vxattribute.name.decoder.packageRef.unknown: the set lacks the package, and
///   `failOnUnknownPackage` was given.
///
/// One decoder serves one stream and one thread.
class VXATTRIBUTE_API AttributeNameDecoder final : public IAttributeNameDecoder {
  public:
    /// @param packages              May be null: no package is known then, and none is missed.
    /// @param failOnUnknownPackage  Refuse references to packages that the set lacks.
    AttributeNameDecoder(AttributeNamePackageSet::Ptr packages, bool failOnUnknownPackage) noexcept;
    AttributeNameDecoder(AttributeNameDecoder const &);
    AttributeNameDecoder & operator=(AttributeNameDecoder const &);
    ~AttributeNameDecoder();

    AttributeNamePackageSet::Ptr const & package_set() const noexcept VXCORE_LIFETIMEBOUND {
        return m_packageSet;
    }

    /// Reads the table that `write_encoder_mappings` wrote, in place of all references so far; they
    /// stay when that raises. Memory grows with the data, whatever the count says.
    void read_decoder_mappings(vxserialize::Reader & reader) override;

    AttributeName read_attribute_name(vxserialize::Reader & reader) override;

  private:
    /// Says that the tokens from `base` on, `size` of them, are those of a package.
    struct PackageRef {
        bool covers(unsigned int token) const noexcept {
            return base <= token && token - base < size;
        }

        unsigned int base;
        unsigned int size;
        AttributeNamePackage const * package; // the set keeps it alive; null: not at hand
        vxcore::Uuid id;
    };

    void read_package_ref(vxserialize::Reader & reader, std::vector<PackageRef> & refs) const;
    PackageRef const & ref_of(unsigned int token);

    AttributeNamePackageSet::Ptr m_packageSet;
    bool m_failOnUnknownPackage;
    std::vector<PackageRef> m_packageRefs; // ascending, without overlaps
    std::size_t m_lastRef = 0;             // the one that the last token fell to
};

} // namespace vxattribute
