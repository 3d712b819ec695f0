#pragma once

#include "vxattribute/attribute_name_decoder.h"
#include "vxattribute/attribute_name_encoder.h"
#include "vxattribute/stream/contexts_internal.h"
#include "vxcore/error_exception.h"
#include "vxserialize/error_codes.h"
#include "vxserialize/reader.h"

/// Streams that are one value or one map and nothing else: what bytes.h and text_form.h share.
/// Packages of names may be null everywhere, which means plain names.
namespace vxattribute::impl {

inline void write_whole(WriteContext const & context, AttributeValue const & value) {
    context.write_value(value);
}

inline void write_whole(WriteContext const & context, AttributeMapBase const & map) {
    context.write_map(map);
}

/// @tparam Object  AttributeValue or AttributeMapBase.
template <typename Object>
void write_whole(vxserialize::Writer & writer, Object const & object,
                 AttributeNamePackageSet::Ptr const & packages, bool sortedNames) {
    if (packages) {
        AttributeNameEncoder encoder(packages);
        write_whole(WriteContext(writer, &encoder, sortedNames), object);
    } else {
        write_whole(WriteContext(writer, nullptr, sortedNames), object);
    }
}

/// Reads plain names, and raises at the first coded one.
class PlainNameDecoder final : public IAttributeNameDecoder {
  public:
    /// @param failure  How reading without a decoder failed.
    explicit PlainNameDecoder(vxcore::ErrorInfo::Ptr failure) noexcept
        : m_failure(std::move(failure)) {}

    /// Never called: `to_bytes` and `to_text_form` write no table.
    void read_decoder_mappings(vxserialize::Reader & reader) override;

    AttributeName read_attribute_name(vxserialize::Reader & reader) override;

  private:
    vxcore::ErrorInfo::Ptr m_failure;
};

/// Returns what `read(reader, decoder)` reads from `Opened(input).reader`.
///
/// Without packages, coded names fail as elements of a wrong type. Such input is read once more to
/// find out whether that is the reason, so that plain names need no check while they are read.
template <typename Opened, typename Input, typename Read>
auto read_whole(Input input, AttributeNamePackageSet::Ptr const & packages, Read read) {
    Opened opened(input);
    if (packages) {
        AttributeNameDecoder decoder(packages, true);
        return read(opened.reader, &decoder);
    }
    try {
        return read(opened.reader, nullptr);
    } catch (vxcore::ErrorException const & failure) {
        if (failure.info()->code() == vxserialize::error::vxserialize_data_type) {
            PlainNameDecoder decoder(failure.info());
            Opened again(input);
            read(again.reader, &decoder);
        }
        throw;
    }
}

template <typename Reader>
AttributeMap read_map_to_end(Reader & reader, IAttributeNameDecoder * decoder) {
    AttributeMap map = ReadContext(reader, decoder).read_map();
    reader.expect_end();
    return map;
}

/// A map without a type number is a list. No value starts with one.
template <typename Reader>
AttributeValue read_value_to_end(Reader & reader, IAttributeNameDecoder * decoder) {
    if (reader.next_type() == vxserialize::eElement_List) {
        return read_map_to_end(reader, decoder);
    }
    AttributeValue value;
    ReadContext(reader, decoder).read_value(value);
    reader.expect_end();
    return value;
}

/// The one map of a value that was read.
///
/// @raises error.vxattribute.value.type.mismatch, error.vxattribute.value.cardinality.expectSingle
AttributeMap only_map(AttributeValue const & value);

template <typename Opened, typename Input>
AttributeValue read_whole_value(Input input, AttributeNamePackageSet::Ptr const & packages) {
    return read_whole<Opened>(input, packages, [](auto & reader, IAttributeNameDecoder * decoder) {
        return read_value_to_end(reader, decoder);
    });
}

template <typename Opened, typename Input>
AttributeMap read_whole_map(Input input, AttributeNamePackageSet::Ptr const & packages) {
    return read_whole<Opened>(input, packages, [](auto & reader, IAttributeNameDecoder * decoder) {
        return reader.next_type() == vxserialize::eElement_List
                   ? read_map_to_end(reader, decoder)
                   : only_map(read_value_to_end(reader, decoder));
    });
}

} // namespace vxattribute::impl
