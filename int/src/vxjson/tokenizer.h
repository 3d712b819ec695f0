#pragma once

#include "vxcore/read_stream.h"
#include "vxjson/itokenizer.h"

#include <cstddef>
#include <memory>

namespace vxjson {

/// Cuts JSON text (RFC 8259) into tokens, out of memory or out of a stream.
///
///     Tokenizer tokenizer(text.data(), text.size());
///     Reader reader(tokenizer);
///
/// It knows the lexis only: that brackets match and commas stand where they should is for the
/// Reader. Numbers follow the grammar and end at white space, a punctuator or the end. Escapes are
/// decoded and surrogate pairs joined. One byte order mark in front is passed over. The whole of it
/// is told in docs/formats/json.md.
///
/// Slices point into the memory or the buffer. Text with escapes is decoded into a scratch area, in
/// pieces.
///
/// Cost. No allocation per token. Over a stream the buffer grows only for a number that does not
/// fit. A string of any size comes in pieces. Nothing depends on the size of the text.
///
/// Errors. `next()` gives `eToken_Error` for ever after a failure, and `error()` tells it:
/// `error.vxjson.reader.tokenizer.syntaxError` with what was expected and found, or
/// `error.vxjson.reader.tokenizer.stream` with what the stream raised as the nested error.
class VXJSON_API Tokenizer final : public ITokenizer {
  public:
    struct Options {
        bool allow_comments = false;       ///< // to the end of the line, and /* */
        bool allow_unquoted_names = false; ///< words of letters, digits, "_", "$" and bytes >= 0x80
        bool allow_single_quotes = false;  ///< strings in ', and the escape \'
        bool validate_utf8 = false;        ///< else bytes from 0x80 on pass unchanged
        unsigned int max_depth = 256;      ///< objects and arrays that may be open at one moment
        unsigned int max_number_size = 65536; ///< in bytes
        unsigned int buffer_size = 16384;     ///< bytes asked of a stream at once; 0 counts as 1
        vxuri::UriReference uri;              ///< origin of the text, for messages
    };

    /// @param data  Must outlive the tokenizer, and so must its content.
    Tokenizer(char const * data, std::size_t size);
    Tokenizer(char const * data, std::size_t size, Options const & options);

    /// @param stream  Must outlive the tokenizer, which reads ahead by up to its buffer.
    explicit Tokenizer(vxcore::IReadStream & stream);
    Tokenizer(vxcore::IReadStream & stream, Options const & options);

    Tokenizer(Tokenizer const &) = delete;
    Tokenizer & operator=(Tokenizer const &) = delete;
    ~Tokenizer();

    EToken next() override;

    StringSlice & text(StringSlice & out) override { return out = m_text; }

    void error(vxcore::ErrorInfo::Ptr & out) override { out = m_error; }

    /// The start of the token given last; after a failure the byte in question.
    void position(SourcePosition & out) override;

  private:
    friend class Reader; // takes the text of tokens without a virtual call

    enum EMode : unsigned char { eMode_Start, eMode_Between, eMode_String, eMode_Name, eMode_End };

    static constexpr unsigned int sm_scratchSize = 512;

    EToken next_slow();
    EToken checked(EToken token) noexcept;
    EToken scan_start();
    EToken scan_token();
    EToken scan_punctuator();
    EToken scan_number();
    EToken scan_word();
    EToken scan_string();
    EToken scan_escapes();
    EToken scan_name();
    bool skip_space();
    bool skip_comment();
    bool skip_block_comment();

    template <bool High>
    char const * run_end() noexcept;

    bool is_token_end(char c) const noexcept;
    void require(std::size_t size);
    bool refill();
    void grow();

    EToken give(EToken token, char const * start, char const * end) noexcept {
        m_text = StringSlice(start, 0, static_cast<unsigned int>(end - start));
        m_tokenOffset = offset(start);
        return token;
    }

    unsigned long long offset(char const * at) const noexcept {
        return m_base + static_cast<unsigned long long>(at - m_begin);
    }

    EToken fail(char const * at, char const * expected);
    EToken fail_limit(char const * at, char const * message, unsigned int limit);
    void fail_stream(std::exception const * cause);
    void set_error(vxcore::ErrorCode const & code, char const * message, vxcore::ErrorParams params,
                   vxcore::ErrorInfo::Ptr nested);

    Options const m_options;
    vxcore::IReadStream * const m_stream; // null over memory
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_capacity = 0;
    char const * m_begin;  // of the buffer or the memory
    char const * m_cursor; // the next byte; refilling keeps what stands from here on
    char const * m_limit;
    unsigned long long m_base = 0; // offset of m_begin in the text
    bool m_ended;                  // nothing comes behind m_limit

    EMode m_mode = eMode_Start;
    char m_quote = '"';
    unsigned int m_depth = 0;
    StringSlice m_text;
    unsigned long long m_tokenOffset = 0;
    unsigned long long m_line = 1;
    unsigned long long m_lineStart = 0; // offset of the first byte of the line

    bool m_failed = false;
    unsigned long long m_errorOffset = 0;
    vxcore::ErrorInfo::Ptr m_error;

    char m_scratch[sm_scratchSize]; // decoded text
};

} // namespace vxjson
