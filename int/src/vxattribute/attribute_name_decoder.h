#pragma once

#include "vxattribute/attribute_name_coder.h"
#include "vxattribute/attribute_name_package_set.h"

namespace vxattribute {

namespace impl {
template <typename Source>
class ValueReader;
}

/// Reads names that an AttributeNameEncoder wrote.
///
/// The stream refers to the packages that it uses. When the decoder lacks one of them, its names
/// are read as the 32 digits of the package's id, a colon and the position of the name; a decoder
/// made with `failOnUnknownPackage` raises instead.
///
///     AttributeNameDecoder decoder(AttributeNamePackageSet::create(package), true);
///     AttributeMap const map(reader, decoder);
///
/// Cost. A token of the same package as the last token takes one comparison and one reference
/// count; any other token takes a binary search of the references. Names of a known package are
/// not interned again.
///
/// Errors, in addition to those of the reader. After any of them neither the decoder nor its stream
/// can be used again.
/// - error.vxattribute.name.decoder.unknownIndex: no reference covers a token.
/// - error.vxattribute.name.decoder.packageRef.invalid: a reference cannot be read, begins before
///   the end of the previous one, or has another size than the package of the set.
/// - error.vxattribute.name.decoder.packageRef.unknown: the set lacks the package, and
///   `failOnUnknownPackage` was given.
///
/// One decoder serves one stream and one thread.
class VXATTRIBUTE_API AttributeNameDecoder final : public IAttributeNameDecoder {
  public:
    /// @param packages              The known packages. When null, every package is accepted and
    ///                              read as unknown, whatever `failOnUnknownPackage` is.
    /// @param failOnUnknownPackage  Raise on a reference to a package that the set lacks.
    AttributeNameDecoder(AttributeNamePackageSet::Ptr packages, bool failOnUnknownPackage) noexcept;

    /// A copy has the references read so far.
    AttributeNameDecoder(AttributeNameDecoder const &);
    AttributeNameDecoder & operator=(AttributeNameDecoder const &);
    ~AttributeNameDecoder();

    /// The known packages; may be null.
    AttributeNamePackageSet::Ptr const & package_set() const noexcept VXCORE_LIFETIMEBOUND {
        return m_packageSet;
    }

    /// Reads the table that `write_encoder_mappings` wrote, which replaces all references so far.
    /// When this raises, they stay. Memory grows with the data, whatever the count in it.
    void read_decoder_mappings(vxserialize::Reader & reader) override;

    /// Reads a name in any of its forms, with the reference before it if there is one.
    AttributeName read_attribute_name(vxserialize::Reader & reader) override;

  private:
    template <typename Source>
    friend class impl::ValueReader;

    /// The tokens from `base` on, `size` of them, are the names of a package.
    struct PackageRef {
        bool covers(unsigned int token) const noexcept {
            return base <= token && token - base < size;
        }

        unsigned int base;
        unsigned int size;
        AttributeNamePackage const * package; // owned by the set; null: unknown
        vxcore::Uuid id;
    };

    void read_package_ref(vxserialize::Reader & reader, std::vector<PackageRef> & refs) const;

    /// The name of that token. Successive names are mostly of one package, so the last reference
    /// found is tried first, in line.
    AttributeName name_of(unsigned int token) {
        if (m_lastRef >= m_packageRefs.size() || !m_packageRefs[m_lastRef].covers(token)) {
            find_ref(token);
        }
        PackageRef const & ref = m_packageRefs[m_lastRef];
        return ref.package != nullptr ? ref.package->begin()[token - ref.base]
                                      : generated_name(ref, token);
    }

    void find_ref(unsigned int token);
    static AttributeName generated_name(PackageRef const & ref, unsigned int token);

    AttributeNamePackageSet::Ptr m_packageSet;
    bool m_failOnUnknownPackage;
    std::vector<PackageRef> m_packageRefs; // ascending, without overlaps
    std::size_t m_lastRef = 0;             // of the last token
};

} // namespace vxattribute
