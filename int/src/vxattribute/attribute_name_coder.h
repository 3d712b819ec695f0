#pragma once

#include "vxattribute/fwd.h"
#include "vxcore/export.h"
#include "vxserialize/fwd.h"

namespace vxattribute {

/// Writes the names of one stream in a shorter form. AttributeNameEncoder is the usual one; derive
/// from this class for a form of your own.
///
///     AttributeNameEncoder encoder(packages);
///     encoder.write_encoder_mappings(writer); // optional
///     map.write(writer, encoder);
///
/// An encoder remembers what it has written, so it serves one stream and one thread. Its caller
/// owns it and keeps it until the last name is written. The destructor is protected: never delete
/// through this interface.
///
/// Errors. Both functions raise what the writer raises. After a failure neither the encoder nor the
/// stream can be used again.
class IAttributeNameEncoder {
  public:
    /// Without state, so all are trivial; a copy of an implementation copies what it remembers.
    IAttributeNameEncoder() = default;
    IAttributeNameEncoder(IAttributeNameEncoder const &) = default;
    IAttributeNameEncoder & operator=(IAttributeNameEncoder const &) = default;

    /// Writes everything that a decoder needs for the names that follow. Optional: without it the
    /// names bring along what they need.
    virtual void write_encoder_mappings(vxserialize::Writer & writer) = 0;

    /// Writes one name. Called for each name of a map, at every depth, in the order in which the
    /// names are written. The empty name is written like any other.
    virtual void write_attribute_name(vxserialize::Writer & writer, AttributeName const & name) = 0;

  protected:
    ~IAttributeNameEncoder() = default;
};

/// Reads the names that an IAttributeNameEncoder wrote. AttributeNameDecoder is the usual one. The
/// same rules hold: one stream, one thread, owned by the caller, never deleted through this
/// interface.
///
/// Errors. Both functions raise what the reader raises, and errors of their own when the form is
/// damaged. After a failure neither the decoder nor the stream can be used again.
class IAttributeNameDecoder {
  public:
    /// Without state, as those of the encoder.
    IAttributeNameDecoder() = default;
    IAttributeNameDecoder(IAttributeNameDecoder const &) = default;
    IAttributeNameDecoder & operator=(IAttributeNameDecoder const &) = default;

    /// Reads what `write_encoder_mappings` wrote. Call it exactly where that was called.
    virtual void read_decoder_mappings(vxserialize::Reader & reader) = 0;

    /// Reads one name in the form that `write_attribute_name` wrote, with everything that this call
    /// wrote before the name.
    virtual AttributeName read_attribute_name(vxserialize::Reader & reader) = 0;

  protected:
    ~IAttributeNameDecoder() = default;
};

/// A function object that writes names, attributes and maps with an encoder, for templates that
/// take a function of a writer and an object. The encoder must outlive it. A copy uses the same
/// encoder.
class AttributeNameEncoderFunctor {
  public:
    /// @param encoder  Is not owned.
    explicit AttributeNameEncoderFunctor(
        IAttributeNameEncoder & encoder VXCORE_LIFETIMEBOUND) noexcept
        : m_encoder(encoder) {}

    /// Calls `object.write(writer, encoder)`.
    ///
    /// @tparam T  AttributeName, Attribute or a map, or any class with such a `write`.
    /// @raises What that `write` raises.
    template <typename T>
    void operator()(vxserialize::Writer & writer, T const & object) const {
        object.write(writer, m_encoder);
    }

  private:
    IAttributeNameEncoder & m_encoder;
};

/// The same for reading: names, attributes and `MutableAttributeMap`s, with a decoder, which must
/// outlive it. An AttributeMap cannot be read into, because it is immutable: construct it from the
/// reader and the decoder.
class AttributeNameDecoderFunctor {
  public:
    /// @param decoder  Is not owned.
    explicit AttributeNameDecoderFunctor(
        IAttributeNameDecoder & decoder VXCORE_LIFETIMEBOUND) noexcept
        : m_decoder(decoder) {}

    /// Calls `object.read(reader, decoder)`.
    ///
    /// @tparam T  AttributeName, Attribute or MutableAttributeMap, or any class with such a `read`.
    /// @raises What that `read` raises.
    template <typename T>
    void operator()(vxserialize::Reader & reader, T & object) const {
        object.read(reader, m_decoder);
    }

  private:
    IAttributeNameDecoder & m_decoder;
};

} // namespace vxattribute
