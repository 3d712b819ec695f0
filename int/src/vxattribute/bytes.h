#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/attribute_name_package_set.h"
#include "vxattribute/attribute_value_marshaler.h"
#include "vxcore/byte_view.h"
#include "vxcore/fwd.h"
#include "vxserialize/memory_list.h"

#include <string>

/// Values and maps to and from bytes, in one call each. The bytes are the binary form, which
/// docs/formats/binary.md and docs/formats/values.md specify.
///
///     std::string const bytes = to_bytes(map);
///     AttributeMap const copy = map_from_bytes(bytes);
///
/// Names may be written as numbers, if both sides have the same packages of names:
///
///     std::string const coded = to_bytes(map, packages);
///     AttributeMap const other = map_from_bytes(coded, packages);
///
/// Nothing in the bytes says whether they are coded: pass the packages on both sides or on neither.
/// A null pointer as packages means none. Each call has a coder of its own, so each result can be
/// read alone.
///
/// Cost. As fast as a MemoryWriter and a MemoryReader, which these functions use.
namespace vxattribute {

/// Writes a value or map and returns the bytes as a string.
///
///     to_bytes(map, {.sorted_names = true}) // the same bytes in every process
///
/// @raises error.vxserialize.depth: maps and lists nest deeper than
///         `vxserialize::max_open_containers`.
///         std::length_error: more than 2^32 - 1 bytes. std::bad_alloc: no memory.
/// @cost   One copy of the bytes; `to_memory_list` needs none.
VXATTRIBUTE_API std::string to_bytes(AttributeValue const & value,
                                     AttributeNamePackageSet::Ptr const & packages,
                                     StreamOptions const & options = {});
VXATTRIBUTE_API std::string to_bytes(AttributeMapBase const & map,
                                     AttributeNamePackageSet::Ptr const & packages,
                                     StreamOptions const & options = {});

inline std::string to_bytes(AttributeValue const & value, StreamOptions const & options = {}) {
    return to_bytes(value, nullptr, options);
}

inline std::string to_bytes(AttributeMapBase const & map, StreamOptions const & options = {}) {
    return to_bytes(map, nullptr, options);
}

/// Returns the same bytes as a list, which a SerializedValue or a MemoryReader can share.
VXATTRIBUTE_API vxcore::RefCountPtr<vxserialize::MemoryList>
to_memory_list(AttributeValue const & value, AttributeNamePackageSet::Ptr const & packages,
               StreamOptions const & options = {});
VXATTRIBUTE_API vxcore::RefCountPtr<vxserialize::MemoryList>
to_memory_list(AttributeMapBase const & map, AttributeNamePackageSet::Ptr const & packages,
               StreamOptions const & options = {});

inline vxcore::RefCountPtr<vxserialize::MemoryList>
to_memory_list(AttributeValue const & value, StreamOptions const & options = {}) {
    return to_memory_list(value, nullptr, options);
}

inline vxcore::RefCountPtr<vxserialize::MemoryList>
to_memory_list(AttributeMapBase const & map, StreamOptions const & options = {}) {
    return to_memory_list(map, nullptr, options);
}

/// Passes the same bytes to a sink, such as a `vxcore::StreamSink`, in pieces. Everything is
/// written to memory first: when that raises, the sink has received nothing.
///
/// @raises What the sink raises, too.
VXATTRIBUTE_API void write_bytes(vxcore::OutputSink & sink, AttributeValue const & value,
                                 AttributeNamePackageSet::Ptr const & packages,
                                 StreamOptions const & options = {});
VXATTRIBUTE_API void write_bytes(vxcore::OutputSink & sink, AttributeMapBase const & map,
                                 AttributeNamePackageSet::Ptr const & packages,
                                 StreamOptions const & options = {});

inline void write_bytes(vxcore::OutputSink & sink, AttributeValue const & value,
                        StreamOptions const & options = {}) {
    write_bytes(sink, value, nullptr, options);
}

inline void write_bytes(vxcore::OutputSink & sink, AttributeMapBase const & map,
                        StreamOptions const & options = {}) {
    write_bytes(sink, map, nullptr, options);
}

/// Reads all the bytes as one value. A map that was written as a map becomes a value of one map.
///
/// The result does not refer to the bytes.
///
/// @param bytes     Any run of bytes: see ByteView.
/// @param packages  Those of the writer, or more. Bytes without coded names are read with them too.
/// @raises error.vxserialize.data, and codes below it: the bytes are damaged or cut off, or more
///         bytes follow. The message names the place.
///         error.vxserialize.data.type: names are coded, and there are no packages; its message
///         says so.
///         error.vxattribute.value.type.unknown: a number that no type has.
///         error.vxattribute.name.decoder.packageRef.unknown: `packages` lack one of the writer.
VXATTRIBUTE_API AttributeValue
value_from_bytes(vxcore::ByteView bytes, AttributeNamePackageSet::Ptr const & packages = nullptr);

/// Reads all the bytes as one map, which was written as a map or as a value of one map.
///
/// @raises As `value_from_bytes`.
///         error.vxattribute.value.type.mismatch: the bytes are a value of another type.
///         error.vxattribute.value.cardinality.expectSingle: they are a value of no or several
///         maps.
VXATTRIBUTE_API AttributeMap
map_from_bytes(vxcore::ByteView bytes, AttributeNamePackageSet::Ptr const & packages = nullptr);

} // namespace vxattribute
