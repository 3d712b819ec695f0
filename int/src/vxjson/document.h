#pragma once

#include "vxjson/reader.h"
#include "vxjson/tokenizer.h"

namespace vxjson {

/// A tokenizer and the reader over it in one object.
///
///     Document document(text.data(), text.size());
///     auto const value = document.reader().next_value();
class VXJSON_API Document {
  public:
    struct Options {
        Tokenizer::Options tokenizer;
        Reader::Options reader;
    };

    /// @param data  Must outlive the document, and so must its content.
    Document(char const * data, std::size_t size);
    Document(char const * data, std::size_t size, Options const & options);

    /// @param stream  Must outlive the document, which reads ahead by up to its buffer.
    explicit Document(vxcore::IReadStream & stream);
    Document(vxcore::IReadStream & stream, Options const & options);

    Document(Document const &) = delete;
    Document & operator=(Document const &) = delete;
    ~Document();

    Reader & reader() noexcept VXCORE_LIFETIMEBOUND { return m_reader; }

    Tokenizer & tokenizer() noexcept VXCORE_LIFETIMEBOUND { return m_tokenizer; }

  private:
    Tokenizer m_tokenizer;
    Reader m_reader;
};

} // namespace vxjson
