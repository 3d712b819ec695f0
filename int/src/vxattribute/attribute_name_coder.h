#pragma once

#include "vxattribute/fwd.h"
#include "vxcore/export.h"
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

    /// Writes all that a decoder needs to know, at once and ahead of the names that follow.
    /// Optional.
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

/// Carries an encoder through templates of callers that write by a function of writer and object.
/// Serves names, attributes and maps. The encoder must outlive it.
class AttributeNameEncoderFunctor {
  public:
    explicit AttributeNameEncoderFunctor(
        IAttributeNameEncoder & encoder VXCORE_LIFETIMEBOUND) noexcept
        : m_encoder(encoder) {}

    template <typename T>
    void operator()(vxserialize::Writer & writer, T const & object) const {
        object.write(writer, m_encoder);
    }

  private:
    IAttributeNameEncoder & m_encoder;
};

/// The same for a decoder. Serves names, attributes and changeable maps.
class AttributeNameDecoderFunctor {
  public:
    explicit AttributeNameDecoderFunctor(
        IAttributeNameDecoder & decoder VXCORE_LIFETIMEBOUND) noexcept
        : m_decoder(decoder) {}

    template <typename T>
    void operator()(vxserialize::Reader & reader, T & object) const {
        object.read(reader, m_decoder);
    }

  private:
    IAttributeNameDecoder & m_decoder;
};

} // namespace vxattribute
