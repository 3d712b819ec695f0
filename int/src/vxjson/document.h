#pragma once

#include "vxjson/reader.h"
#include "vxjson/tokenizer.h"

namespace vxjson {

/// A tokenizer and a reader over it in one object.
///
///     Document document(text.data(), text.size());
///     auto const value = document.reader().next_value();
///
/// Use it where nothing needs the two parts separately. Values may outlive the document as they may
/// outlive a Reader.
///
/// Cost. That of both parts. The object has about 700 bytes on a 64-bit machine, 512 of them for
/// the scratch area of the tokenizer.
///
/// Threads. One object belongs to one thread at a time.
///
/// Errors. Those of Tokenizer and Reader, when values are read. A constructor over memory reads
/// nothing yet.
class VXJSON_API Document {
  public:
    /// The options of both parts, with their defaults.
    struct Options {
        Tokenizer::Options tokenizer;
        Reader::Options reader;
    };

    /// Reads from memory.
    ///
    /// @param data  `size` bytes, which must outlive the document unchanged. May be null when there
    ///              are none.
    Document(char const * data, std::size_t size);
    Document(char const * data, std::size_t size, Options const & options);

    /// Reads from a stream.
    ///
    /// @param stream  Must outlive the document. It is read ahead by up to the size of the buffer.
    /// @raises std::bad_alloc: no memory for the buffer.
    explicit Document(vxcore::IReadStream & stream);
    Document(vxcore::IReadStream & stream, Options const & options);

    Document(Document const &) = delete;
    Document & operator=(Document const &) = delete;

    /// Values that are left may be used as Reader::~Reader says.
    ~Document();

    /// The reader, for values. It lives as long as the document.
    Reader & reader() noexcept VXCORE_LIFETIMEBOUND { return m_reader; }

    /// The tokenizer, for the place in the text. Calling its `next()` takes tokens from the reader.
    Tokenizer & tokenizer() noexcept VXCORE_LIFETIMEBOUND { return m_tokenizer; }

  private:
    Tokenizer m_tokenizer; // first: the reader refers to it
    Reader m_reader;
};

} // namespace vxjson
