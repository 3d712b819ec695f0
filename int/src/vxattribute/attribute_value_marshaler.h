#pragma once

#include "vxattribute/attribute_value.h"
#include "vxserialize/fwd.h"

/// Values through a writer and a reader of any form: docs/formats/values.md.
namespace vxattribute {

/// How values and maps are written to a stream.
struct StreamOptions {
    /// Writes the elements of each map sorted by the bytes of their names. The same value then has
    /// the same bytes in every process, so that they may be hashed, signed or compared. With an
    /// encoder this needs the same packages and an encoder in the same state on both sides.
    ///
    /// Without it elements are in map order, which is by address: bytes differ between processes,
    /// and between runs of a program. Readers take both alike.
    ///
    /// Costs a sort and one allocation per map. Values that are equal may still have different
    /// bytes: 0.0 and -0.0, for example.
    bool sorted_names = false;
};

/// Writes a value so that a reader can recognize its type.
///
/// A single boolean, integer, string, double, UUID, time or binary element is written alone. Any
/// other value starts with its type number; no elements, several elements and maps are written as a
/// list. A list that shrank to one element is written as a scalar.
///
/// With an encoder, the names of nested maps at every depth go through it. The stream does not say
/// whether it is coded: the reader must use a decoder exactly where an encoder was used.
///
/// Without `sorted_names` the bytes of a value with maps are not stable between processes.
///
///     write_attribute_value(writer, value, StreamOptions{.sorted_names = true});
///
/// @raises what the writer and the encoder raise; error.vxserialize.depth, when maps and lists nest
///         deeper than `vxserialize::max_open_containers`.
VXATTRIBUTE_API void write_attribute_value(vxserialize::Writer & writer,
                                           AttributeValue const & value);
VXATTRIBUTE_API void write_attribute_value(vxserialize::Writer & writer,
                                           AttributeValue const & value,
                                           StreamOptions const & options);
VXATTRIBUTE_API void write_attribute_value(vxserialize::Writer & writer,
                                           IAttributeNameEncoder & encoder,
                                           AttributeValue const & value);
VXATTRIBUTE_API void write_attribute_value(vxserialize::Writer & writer,
                                           IAttributeNameEncoder & encoder,
                                           AttributeValue const & value,
                                           StreamOptions const & options);

/// As `AttributeMapBase::write`, with options.
VXATTRIBUTE_API void write_attribute_map(vxserialize::Writer & writer, AttributeMapBase const & map,
                                         StreamOptions const & options);
VXATTRIBUTE_API void write_attribute_map(vxserialize::Writer & writer,
                                         IAttributeNameEncoder & encoder,
                                         AttributeMapBase const & map,
                                         StreamOptions const & options);

/// Reads what `write_attribute_value` wrote, in any order of names. When it raises, `value` is as
/// it was.
///
/// Also accepts the number of Null, a type number before a single element of any type, and a list
/// of one element as a scalar. Of equal names in a map the last value stays. Counts in the stream
/// are hints: memory grows with the data.
///
/// @raises error.vxattribute.value.type.unknown: a number that no type has.
///         What the reader and the decoder raise passes through.
VXATTRIBUTE_API void read_attribute_value(vxserialize::Reader & reader, AttributeValue & value);
VXATTRIBUTE_API void read_attribute_value(vxserialize::Reader & reader,
                                          IAttributeNameDecoder & decoder, AttributeValue & value);

} // namespace vxattribute
