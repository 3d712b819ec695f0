#pragma once

#include "vxserialize/containers_impl.h"
#include "vxserialize/name_cache_impl.h"
#include "vxserialize/reader.h"

#include <memory>
#include <string_view>

namespace vxserialize {

/// Reads the text form, which docs/formats/text.md specifies, from a stream.
///
/// It accepts more than TextWriter writes: blanks, tabs and line ends between all tokens,
/// hexadecimal digits of either case, and lists that do not announce their count.
///
///     TextReader reader(stream, 4096);
///     std::string name;
///     reader >> name;
///     unsigned int const port = reader.read_uint();
///
/// The reader reads ahead by up to its buffer, but does not check what follows the last element
/// that the caller reads: call `expect_end()` for that. A read that returns fewer bytes than asked
/// for ends the stream, as IReadStream specifies.
///
/// Cost. Besides the buffer, memory grows only with the data received. Names are remembered, so a
/// name that comes again costs a comparison and an atomic count.
///
/// Errors. Those of Reader; offsets count bytes from where the stream was at construction. Also
/// `error.vxserialize.data.count` for a list with another number of elements than it announces.
/// What the stream raises passes through.
class VXSERIALIZE_API TextReader final : public Reader {
  public:
    /// @param stream  Must outlive the reader.
    /// @param size    Bytes of the buffer; 0 counts as 1. Any size works; each refill is one call
    ///                of `stream`.
    /// @raises        std::bad_alloc: no memory for the buffer.
    /// @cost          Allocates the buffer. Nothing is read yet.
    TextReader(vxcore::IReadStream & stream, unsigned int size);
    TextReader(TextReader const &) = delete;
    TextReader & operator=(TextReader const &) = delete;
    ~TextReader() override;

    /// True if only blanks, tabs and line ends follow, which are then consumed. The stream may
    /// raise while it is read.
    bool at_end();

    /// Raises unless the reader is at the end, so that text after the last element is not lost
    /// without notice.
    ///
    /// @raises error.vxserialize.data: something follows, at the byte that the message names.
    void expect_end();

    /// Scans a number, name, time or UUID completely, since its kind shows only then. One of 128
    /// or more characters is no element. The stream may raise while it is read.
    EElementKind next_type() override;

    /// The reads of single elements, as in Reader. A number must fit its type: others raise
    /// `error.vxserialize.data`.
    void read_null() override;
    bool read_if_null() override;
    bool read_bool() override;
    long long read_integer() override;
    unsigned int read_uint() override;
    double read_double() override;
    void read_string(std::string & value) override;
    vxcore::StringKey read_string_key() override;
    vxcore::AbsoluteTime read_absolute_time() override;
    vxcore::RelativeTime read_relative_time() override;
    vxcore::Uuid read_uuid() override;

    /// Both decode the whole block into memory first.
    ReadStreamPtr read_binary() override;
    vxcore::RefCountPtr<MemoryList> read_binary_as_memory_list() override;

    /// Returns the announced count only if at least that many bytes are known to follow, from the
    /// stream's `size()` or from the buffer; otherwise 0. The list must match its count in any
    /// case.
    ///
    /// @raises error.vxserialize.data.count: the list announces more elements than the stream has
    ///         bytes left for it, if it knows its size, or a count above 2^32 - 1.
    unsigned int begin_list() override;

    /// Takes the comma or the closing bracket.
    ///
    /// @raises error.vxserialize.data: both are missing, or a comma is followed by no element.
    ///         error.vxserialize.data.count: the list has another number of elements than it
    ///         announces. error.vxserialize.data.truncated: the stream ends in the list.
    bool has_next() override;

    /// As in Reader.
    void begin_record() override;

    /// @raises error.vxserialize.data: the closing parenthesis is missing.
    ///         error.vxserialize.data.truncated: the stream ends before it.
    void end_record() override;

  private:
    /// In bytes; longer than any number or time that a writer makes.
    static constexpr unsigned int sm_maxWord = 128;

    // Bytes: text_reader.cpp.
    bool refill(); // replaces the buffer, all of which must be read

    /// The next byte, which stays where it is; -1 at the end of the stream.
    int peek() {
        return m_cursor == m_limit && !refill() ? -1 : static_cast<unsigned char>(*m_cursor);
    }

    // Tokens: text_reader_words.cpp. A word is a number, name, time or UUID.
    int peek_token();
    void scan_word();
    void scan_nan_bits();
    void add_to_word(int c);
    EElementKind word_kind() const noexcept;

    std::string_view word() const noexcept { return {m_word, m_wordSize}; }

    /// Returns the word of the next element, which must be of that kind. `take_word` consumes it.
    std::string_view peek_word(EElementKind kind);
    void take_word() noexcept;

    void take_mark(char mark, EElementKind kind);
    unsigned char take_hex_pair();

    // Lists: text_reader_containers.cpp.
    unsigned int take_count(bool & counted);
    unsigned int believed_count(unsigned int count);

    unsigned long long offset() const noexcept;
    [[noreturn]] void fail(char const * detail) const;
    [[noreturn]] void fail_count(char const * detail) const;
    [[noreturn]] void fail_truncated() const;
    [[noreturn]] void fail_type(EElementKind expected, EElementKind found) const;

    vxcore::IReadStream & m_stream;
    std::unique_ptr<char[]> m_buffer;
    unsigned int const m_bufferSize;

    // The unread bytes of the buffer.
    char const * m_cursor = nullptr;
    char const * m_limit = nullptr;
    unsigned long long m_received = 0; // bytes, from the stream so far
    bool m_streamEnded = false;

    // A word that was scanned to find its kind, and is not read yet.
    unsigned int m_wordSize = 0;
    EElementKind m_wordKind = eElement_None;
    char m_word[sm_maxWord];

    std::string m_text;
    impl::ReadContainers m_containers;
    impl::NameCache m_names;
};

} // namespace vxserialize
