#pragma once

#include "vxattribute/fwd.h"
#include "vxcore/export.h"
#include "vxserialize/fwd.h"

namespace vxattribute {

/// Writes the names of one stream in a shorter form. AttributeNameEncoder is the usual one.
///
/// An encoder serves one stream and one thread, and its caller owns it. The destructor is
/// protected: never delete through this interface. After a failure neither the encoder nor the
/// stream can be used again.
class IAttributeNameEncoder {
  public:
    IAttributeNameEncoder() = default;
    IAttributeNameEncoder(IAttributeNameEncoder const &) = default;
    IAttributeNameEncoder & operator=(IAttributeNameEncoder const &) = default;

    /// Writes everything that a decoder needs for the names that follow. Optional: without it the
    /// names bring along what they need.
    virtual void write_encoder_mappings(vxserialize::Writer & writer) = 0;

    /// Writes one name. Called for each name of a map, at every depth.
    virtual void write_attribute_name(vxserialize::Writer & writer, AttributeName const & name) = 0;

  protected:
    ~IAttributeNameEncoder() = default;
};

/// Reads the names that an IAttributeNameEncoder wrote, under the same rules.
class IAttributeNameDecoder {
  public:
    IAttributeNameDecoder() = default;
    IAttributeNameDecoder(IAttributeNameDecoder const &) = default;
    IAttributeNameDecoder & operator=(IAttributeNameDecoder const &) = default;

    /// Reads what `write_encoder_mappings` wrote. Call it exactly where that was called.
    virtual void read_decoder_mappings(vxserialize::Reader & reader) = 0;

    /// Reads one name.
    virtual AttributeName read_attribute_name(vxserialize::Reader & reader) = 0;

  protected:
    ~IAttributeNameDecoder() = default;
};

/// A function object that writes names, attributes and maps with an encoder, for templates that
/// take a function of a writer and an object. The encoder must outlive it.
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

/// The same for reading: names, attributes and `MutableAttributeMap`s, with a decoder.
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
