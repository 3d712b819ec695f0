#pragma once

#include <compare>

namespace vxtest {

/// An element type that the library does not have: a version number of 16 bits.
struct Version {
    unsigned char major = 0;
    unsigned char minor = 0;

    friend auto operator<=>(Version const &, Version const &) = default;
};

} // namespace vxtest

#include "vxattribute/attribute_value_impl.h"
#include "vxserialize/fwd.h"

namespace vxtest {

vxserialize::Writer & operator<<(vxserialize::Writer & writer, Version const & version);
vxserialize::Reader & operator>>(vxserialize::Reader & reader, Version & version);

} // namespace vxtest

template <>
struct vxattribute::impl::ValueTypeTraits<vxtest::Version> : ObjValueTypeTraits<vxtest::Version> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeVersion; }

    static unsigned int hash(vxtest::Version const & a) noexcept {
        return a.major * 256u + a.minor;
    }

    static void write_trace(std::ostream & stream, TraceFormatter const & formatter,
                            unsigned int indent, vxtest::Version const * begin,
                            vxtest::Version const * end);
};

VXATTRIBUTE_EXTERN_ELEMENT(vxtest::Version);
