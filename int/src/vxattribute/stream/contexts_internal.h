#pragma once

#include "vxattribute/attribute_map.h"
#include "vxserialize/fwd.h"

/// The settings of one write or read. They are the same for a value or map and for everything
/// nested in it. All public functions that write or read one, with or without a coder, use these
/// classes.
namespace vxattribute::impl {

class WriteContext {
  public:
    /// @param encoder      Null for plain names.
    /// @param sortedNames  Sorts the elements of each map by the bytes of their names.
    explicit WriteContext(vxserialize::Writer & writer, IAttributeNameEncoder * encoder = nullptr,
                          bool sortedNames = false) noexcept
        : m_writer(writer), m_encoder(encoder), m_sortedNames(sortedNames) {}

    void write_value(AttributeValue const & value) const;

    void write_map(AttributeMapBase const & map) const;

    /// Writes the map whose elements are in `tree`, in map order.
    void write_tree(AttributeMapBase::Map const & tree) const;

    /// Writes a name and a value.
    void write_element(AttributeMapBase::value_type const & element) const;

  private:
    vxserialize::Writer & m_writer;
    IAttributeNameEncoder * const m_encoder;
    bool const m_sortedNames;
};

class ReadContext {
  public:
    /// @param decoder  Null for plain names.
    explicit ReadContext(vxserialize::Reader & reader,
                         IAttributeNameDecoder * decoder = nullptr) noexcept
        : m_reader(reader), m_decoder(decoder) {}

    /// Reads a value; when that raises, `value` is as it was.
    void read_value(AttributeValue & value) const;

    /// Reads a map. Of equal names the last value is kept.
    AttributeMap read_map() const;

  private:
    vxserialize::Reader & m_reader;
    IAttributeNameDecoder * const m_decoder;
};

} // namespace vxattribute::impl
