#pragma once

#include "vxserialize/fwd.h"

#include <compare>

namespace vxtest {

/// An element type that the library does not have: a version number of 16 bits.
struct Version {
    unsigned char major = 0, minor = 0;

    friend auto operator<=>(Version const &, Version const &) = default;
    friend vxserialize::Writer & operator<<(vxserialize::Writer & writer, Version const & version);
    friend vxserialize::Reader & operator>>(vxserialize::Reader & reader, Version & version);
};

} // namespace vxtest

#include "vxattribute/attribute_value_impl.h" // whose table names the type

template <>
struct vxattribute::impl::ValueTypeTraits<vxtest::Version> : ObjValueTypeTraits<vxtest::Version> {
    static constexpr ValueTypeId const & type() noexcept { return ValueTypeId::typeVersion; }

    static unsigned int hash(vxtest::Version a) noexcept { return a.major * 256u + a.minor; }

    static void write_trace(std::ostream &, TraceFormatter const &, unsigned int indent,
                            vxtest::Version const * begin, vxtest::Version const * end);
};

VXATTRIBUTE_EXTERN_ELEMENT(vxtest::Version);
