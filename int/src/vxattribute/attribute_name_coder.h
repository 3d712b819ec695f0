#pragma once

#include "vxattribute/fwd.h"
#include "vxserialize/fwd.h"

namespace vxattribute {

/// Replaces the names of one stream by something shorter while it is written.
///
/// Belongs to one stream and to its caller; not destroyed through this interface. After a failure
/// the coder is spent, as the stream is.
class IAttributeNameEncoder {
  public:
    IAttributeNameEncoder() = default;
    IAttributeNameEncoder(IAttributeNameEncoder const &) = default;
    IAttributeNameEncoder & operator=(IAttributeNameEncoder const &) = default;

    /// Writes all that a decoder needs to know, at once and ahead of the names. Optional.
    virtual void write_encoder_mappings(vxserialize::Writer & writer) = 0;
    virtual void write_attribute_name(vxserialize::Writer & writer, AttributeName const & name) = 0;

  protected:
    ~IAttributeNameEncoder() = default;
};

/// Reads the names that an IAttributeNameEncoder wrote.
class IAttributeNameDecoder {
  public:
    IAttributeNameDecoder() = default;
    IAttributeNameDecoder(IAttributeNameDecoder const &) = default;
    IAttributeNameDecoder & operator=(IAttributeNameDecoder const &) = default;

    /// Stands exactly where `write_encoder_mappings` of the encoder stood.
    virtual void read_decoder_mappings(vxserialize::Reader & reader) = 0;
    virtual AttributeName read_attribute_name(vxserialize::Reader & reader) = 0;

  protected:
    ~IAttributeNameDecoder() = default;
};

} // namespace vxattribute
