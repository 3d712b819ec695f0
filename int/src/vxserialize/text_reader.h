#pragma once

#include "vxserialize/containers_impl.h"
#include "vxserialize/name_cache_impl.h"
#include "vxserialize/reader.h"

#include <memory>
#include <string_view>

namespace vxserialize {

/// Reads the text form from a stream. The form is told in docs/formats/text.md.
///
/// Beside what TextWriter writes it takes blanks, tabs and line ends between all tokens, digits of
/// either case, and lists of any number of elements that announce none.
///
/// The stream may deliver its bytes in any pieces. The reader reads ahead by up to its buffer; what
/// stands behind the last element that is asked for is not looked at.
///
/// Cost. Beside the buffer, memory grows only with the data: a count is told by `begin_list()` only
/// where at least as many bytes are known to follow, by the stream's `size()` or in the buffer. An
/// announced count is exact all the same.
///
/// Errors. Those of Reader; offsets count bytes from where the stream stood.
class VXSERIALIZE_API TextReader final : public Reader {
  public:
    /// @param stream  Must outlive the reader.
    /// @param size    Bytes of the buffer; 0 counts as 1.
    TextReader(vxcore::IReadStream & stream, unsigned int size);
    TextReader(TextReader const &) = delete;
    TextReader & operator=(TextReader const &) = delete;
    ~TextReader() override;

    EElementKind next_type() override;
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
    ReadStreamPtr read_binary() override;
    vxcore::RefCountPtr<MemoryList> read_binary_as_memory_list() override;
    unsigned int begin_list() override;
    bool has_next() override;
    void begin_record() override;
    void end_record() override;

  private:
    /// Longer than any number or time that a writer makes.
    static constexpr unsigned int sm_maxWord = 128;

    bool refill();
    int peek();
    int peek_token();
    void scan_word();
    void add_to_word(int c);
    EElementKind word_kind() const noexcept;

    std::string_view word() const noexcept { return {m_word, m_wordSize}; }

    /// The word of the next element, which must be of that kind. `take_word` then passes over it.
    std::string_view peek_word(EElementKind kind);
    void take_word() noexcept;

    void take_mark(char mark, EElementKind kind);
    unsigned int take_count(bool & counted);
    unsigned int believed_count(unsigned int count);
    unsigned char take_hex_pair();

    unsigned long long offset() const noexcept;
    [[noreturn]] void fail(char const * detail) const;
    [[noreturn]] void fail_count(char const * detail) const;
    [[noreturn]] void fail_truncated() const;

    vxcore::IReadStream & m_stream;
    std::unique_ptr<char[]> m_buffer;
    unsigned int const m_bufferSize;
    char const * m_cursor = nullptr;
    char const * m_limit = nullptr;
    unsigned long long m_received = 0; // bytes that the stream gave so far
    bool m_streamEnded = false;

    // A number, name or time is taken off the buffer before its kind is known; until it is read it
    // stands here.
    unsigned int m_wordSize = 0;
    EElementKind m_wordKind = eElement_None;
    char m_word[sm_maxWord];

    std::string m_text;
    impl::ReadContainers m_containers;
    impl::NameCache m_names;
};

} // namespace vxserialize
