#pragma once

// Included by the direct reader of vxattribute; not for direct use.

#include "vxjson/reader.h"
#include "vxjson/text_cursor_impl.h"
#include "vxjson/tokenizer.h"

namespace vxjson::impl {

/// Access to the text under a reader, for code that reads a whole container by itself.
///
/// Such code reads the container to its end or not at all. Everything that it does not accept,
/// errors above all, is left to the reader, which is then as it was.
///
///     PlainText text;
///     if (DirectRead::begin(reader, text) && read_all(text, closing)) {
///         DirectRead::end(reader, closing);
///     }
class VXJSON_API DirectRead {
  public:
    /// The limits under which a tokenizer and a reader with these options read. `at` and `last` are
    /// unset.
    static PlainText limits(Tokenizer::Options const & tokenizer,
                            Reader::Options const & reader) noexcept;

    /// Returns in `text` the rest of the container that the reader is at. False if that is not
    /// possible: the tokenizer is not a Tokenizer or has not received the whole text, or the reader
    /// has failed or is not at an object or array.
    static bool begin(Reader const & reader, PlainText & text) noexcept;

    /// Moves the reader to `closing`, the bracket that closes the container: the next token.
    static void end(Reader & reader, char const * closing) noexcept;

  private:
    static char const * start(Reader const & reader, unsigned int & depth) noexcept;
};

} // namespace vxjson::impl
