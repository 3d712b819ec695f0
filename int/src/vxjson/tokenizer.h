#pragma once

#include "vxcore/read_stream.h"
#include "vxjson/itokenizer.h"

#include <cstddef>
#include <memory>

namespace vxjson {

namespace impl {
class DirectRead;
} // namespace impl

/// Splits JSON text (RFC 8259) into tokens. The text is in memory or comes from a stream.
///
///     Tokenizer tokenizer(text.data(), text.size());
///     Reader reader(tokenizer);
///
/// Without a Reader, as a formatter or highlighter needs it:
///
///     StringSlice slice;
///     for (EToken token; (token = tokenizer.next()) != eToken_DocumentEnd;) {
///         if (token == eToken_Error) { break; }
///         use(token, tokenizer.text(slice).view());
///     }
///
/// It knows the lexical rules only. The Reader checks that brackets match and that commas are in
/// the right places. Numbers follow the grammar and end at white space, a punctuator or the end.
/// Escapes are decoded and surrogate pairs joined. One leading byte order mark is skipped.
/// docs/formats/json.md has all the rules.
///
/// Slices point into the text in memory or into the buffer. Text with escapes is decoded into a
/// scratch area, in pieces.
///
/// Cost. No allocation per token. Over a stream the buffer grows only for a number that does not
/// fit; strings of any size come in pieces. Memory does not depend on the size of the text.
///
/// Threads. One object belongs to one thread at a time.
///
/// Errors. After a failure every call of `next()` returns `eToken_Error`, and `error()` returns the
/// failure: `error.vxjson.reader.tokenizer.syntaxError` with what was expected and found, or
/// `error.vxjson.reader.tokenizer.stream` with the stream's exception as the nested error.
class VXJSON_API Tokenizer final : public ITokenizer {
  public:
    /// What is accepted beyond RFC 8259, and the limits. Text beyond a limit is a syntax error.
    struct Options {
        bool allow_comments = false;       ///< // to the end of the line, and /* */
        bool allow_unquoted_names = false; ///< words of letters, digits, "_", "$" and bytes >= 0x80
        bool allow_single_quotes = false;  ///< strings in ', and the escape \'
        bool validate_utf8 = false;        ///< if not, bytes from 0x80 on pass unchanged
        unsigned int max_depth = 256;      ///< objects and arrays open at the same time
        unsigned int max_number_size = 65536; ///< in bytes
        unsigned int buffer_size = 16384;     ///< bytes read from a stream at once; 0 counts as 1
        vxuri::UriReference uri;              ///< the origin of the text, for messages
    };

    /// Reads from memory.
    ///
    /// @param data  `size` bytes, which must outlive the tokenizer unchanged. May be null when
    ///              `size` is 0.
    Tokenizer(char const * data, std::size_t size);
    Tokenizer(char const * data, std::size_t size, Options const & options);

    /// Reads from a stream.
    ///
    /// @param stream  Must outlive the tokenizer. It is read ahead by up to the size of the buffer.
    /// @raises std::bad_alloc: no memory for the buffer.
    explicit Tokenizer(vxcore::IReadStream & stream);
    Tokenizer(vxcore::IReadStream & stream, Options const & options);

    Tokenizer(Tokenizer const &) = delete;
    Tokenizer & operator=(Tokenizer const &) = delete;

    /// Frees the buffer. The stream is left where the last read ended, past the last token.
    ~Tokenizer();

    /// As in ITokenizer. Whatever the stream raises becomes `eToken_Error`. Over a stream a call
    /// may read, and so wait for, more bytes than the token needs.
    ///
    /// @cost   O(size of the token and of the white space and comments before it).
    /// @raises std::bad_alloc: no memory for the error of a failed scan.
    EToken next() override;

    /// As in ITokenizer. No copy: the slice refers to the text in memory, the buffer or the scratch
    /// area.
    StringSlice & text(StringSlice & out) override { return out = m_text; }

    /// As in ITokenizer. The parameters of a syntax error are `expected` and `found`, or `limit`.
    void error(vxcore::ErrorInfo::Ptr & out) override { out = m_error; }

    /// The start of the current token; after a failure the byte at fault. Copies the origin of the
    /// text: one atomic count.
    void position(SourcePosition & out) override;

  private:
    friend class Reader;           // takes tokens without virtual calls
    friend class impl::DirectRead; // reads the text without tokens

    /// What the next token is part of.
    enum EMode : unsigned char {
        eMode_Start,   // the start of the text
        eMode_Between, // nothing: a new token follows
        eMode_String,  // a string in double quotes
        eMode_Quoted,  // a string in single quotes
        eMode_Name,    // an unquoted name
        eMode_End,     // the end of the text
        eMode_Failed,
    };

    static constexpr unsigned int sm_scratchSize = 512; // bytes

    // Plain JSON that lies whole in the buffer (tokenizer_plain_internal.h).
    VXJSON_LOCAL EToken next_plain() noexcept;
    VXJSON_LOCAL EToken next_plain_after_value() noexcept;
    VXJSON_LOCAL EToken next_plain_after_run() noexcept;
    VXJSON_LOCAL EToken take_plain_after_value(char const * at) noexcept;
    VXJSON_LOCAL EToken take_plain(char const * at) noexcept;
    VXJSON_LOCAL EToken take_plain_at(char const * at) noexcept;
    VXJSON_LOCAL EToken take_plain_number(char const * at) noexcept;
    VXJSON_LOCAL EToken take_plain_word(char const * at, EToken token,
                                        std::string_view word) noexcept;
    VXJSON_LOCAL EToken take_plain_run() noexcept;
    VXJSON_LOCAL EToken take_quote(char const * at) noexcept;
    VXJSON_LOCAL char const * find_plain_colon(std::string_view & name) const noexcept;
    VXJSON_LOCAL EToken take_colon(char const * at) noexcept;
    VXJSON_LOCAL char const * skip_plain_space(char const * at) const noexcept;

    // One function for each kind of token. All return eToken_Error after a call of fail().
    VXJSON_LOCAL EToken next_slow();
    EToken checked(EToken token) noexcept;
    EToken scan_start();
    EToken scan_token();
    EToken scan_number();
    EToken scan_word();
    EToken scan_string();
    EToken scan_escapes();
    EToken scan_name();

    // What is between tokens.
    // False: no token follows, at the end of the text or after a failure.
    bool skip_space();
    bool skip_comment();
    bool skip_block_comment();

    /// The end of the plain run at the cursor. With `High`, it consists of whole UTF-8 sequences.
    template <bool High>
    char const * run_end() const noexcept;

    VXJSON_LOCAL bool is_token_end(char c) const noexcept;

    // The buffer (tokenizer_source.cpp).
    VXJSON_LOCAL void set_memory(char const * data, std::size_t size) noexcept;
    void require(std::size_t size);
    bool refill();
    void grow();

    /// Sets the text of a token without escapes, and so its place.
    EToken give(EToken token, char const * start, char const * end) noexcept {
        m_text = StringSlice(start, 0, static_cast<unsigned int>(end - start));
        return token;
    }

    VXJSON_LOCAL unsigned long long token_offset() const noexcept;
    VXJSON_LOCAL void count_lines() noexcept;

    /// The place of a byte of the buffer in the whole text, in bytes.
    unsigned long long offset(char const * at) const noexcept {
        return m_base + static_cast<unsigned long long>(at - m_begin);
    }

    // Errors (tokenizer_source.cpp).
    EToken fail(char const * at, char const * expected);
    EToken fail_limit(char const * at, char const * message, unsigned int limit);
    void fail_stream(std::exception const * cause);
    void set_error(vxcore::ErrorCode const & code, char const * message, vxcore::ErrorParams params,
                   vxcore::ErrorInfo::Ptr nested);

    Options const m_options;
    vxcore::IReadStream * const m_stream = nullptr; // null over memory
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_capacity = 0;
    char const * m_begin;  // of the buffer or the memory
    char const * m_cursor; // the next byte; refill() keeps everything from here on
    char const * m_limit;
    unsigned long long m_base = 0; // offset of m_begin in the text
    bool m_ended = true;           // the text ends at m_limit

    EMode m_mode = eMode_Start;
    unsigned int m_depth = 0;
    StringSlice m_text;                     // of the current token; its place too unless decoded
    unsigned long long m_decodedOffset = 0; // the place of the text in m_scratch

    // The lines up to m_counted, which count_lines() moves to the cursor.
    char const * m_counted;
    unsigned long long m_line = 1;
    unsigned long long m_lineStart = 0; // offset of the first byte of the line

    unsigned long long m_errorOffset = 0; // of a failed scan
    vxcore::ErrorInfo::Ptr m_error;

    char m_scratch[sm_scratchSize]; // decoded text
};

} // namespace vxjson
