#pragma once

#include "vxserialize/containers_impl.h"
#include "vxserialize/writer.h"

namespace vxserialize {

/// Writes the text form, which docs/formats/text.md specifies. People can read it and other texts
/// can contain it: it is printable ASCII without quotes, backslashes and control characters.
///
///     TextWriter writer(target, TextWriter::Options());
///     writer << "port" << 8080;
///     writer.close();                         // the target received: <port> 8080
///
/// With the option `indent` the elements of lists are on lines of their own. Readers accept both.
///
/// Cost. Text goes through a buffer of 256 bytes inside the writer. No value is held in memory as a
/// whole.
///
/// Errors. Besides those of Writer, what the target raises passes through. Drop the writer then:
/// the target may have received half an element, so every later call raises
/// `error.vxserialize.usage`.
class VXSERIALIZE_API TextWriter final : public Writer {
  public:
    /// Receives the text in pieces, which may end anywhere. The destructor is protected: never
    /// delete through this interface.
    class ITextTarget {
      public:
        /// Take the next character, or the next `size` of them, 256 at most. Both may raise. `data`
        /// is not valid after the call.
        virtual void write_char(char c) = 0;
        virtual void write_data(char const * data, unsigned int size) = 0;

      protected:
        ITextTarget() = default;
        ITextTarget(ITextTarget const &) = default;
        ITextTarget & operator=(ITextTarget const &) = default;
        ~ITextTarget() = default;
    };

    /// By default the text is one line.
    struct Options {
        /// If not 0, each element of a list is on a line of its own, indented by so many blanks per
        /// open list. Line feeds are then the only control characters in the text.
        unsigned int indent = 0;
    };

    /// An open writer. Making one neither allocates nor uses the target, which is first called when
    /// the buffer is full or by `close()`.
    ///
    /// @param target   Must outlive the writer. The destructor does not use it.
    /// @param options  Are copied.
    TextWriter(ITextTarget & target, Options const & options);
    TextWriter(TextWriter const &) = delete;
    TextWriter & operator=(TextWriter const &) = delete;

    /// Writes nothing: without `close()` the end of the text is lost.
    ~TextWriter() override;

    /// Passes the rest of the text to the target. A second call does nothing.
    ///
    /// @raises error.vxserialize.usage: a list or record is open, or the target has failed. An open
    ///         list or record leaves the writer usable. What the target raises passes through.
    void close();

    /// The writes, as in Writer. After `close()` they raise `error.vxserialize.usage`. Bytes of a
    /// string are written as they are if they are printable ASCII but no quote, backslash, `%`, `<`
    /// or `>`; others take three characters: "%" and two hexadecimal digits. A block takes two
    /// characters per byte. A double has the fewest digits that read back to the same number.
    void write_null() override;
    void write_bool(bool value) override;
    void write_integer(long long value) override;
    void write_uint(unsigned int value) override;
    void write_double(double value) override;
    void write_string(char const * data, unsigned int size) override;
    void write_string_key(vxcore::StringKey const & key) override;
    void write_absolute_time(vxcore::AbsoluteTime value) override;
    void write_relative_time(vxcore::RelativeTime value) override;
    void write_uuid(vxcore::Uuid const & value) override;
    void write_binary(void const * data, unsigned int size) override;
    void write_memory_list(MemoryListBase const & list) override;

    /// Announces the count in the text only if it is 2 or more.
    void begin_list(unsigned int count) override;

    /// As in Writer: a comma, a bracket, and the parentheses of a record.
    void next_list_item() override;
    void end_list() override;
    void begin_record() override;
    void end_record() override;

  private:
    static constexpr unsigned int sm_bufferSize = 256; // bytes

    /// A writer fails when its target raises. It accepts no calls in the last two states.
    /// The state is `eState_Failed` during each call of the target, so that it remains after a
    /// raise.
    enum EState : unsigned char { eState_Open, eState_Closed, eState_Failed };

    void check_open() const;
    void begin_element();

    // Text for the buffer, which goes to the target when it is full.
    char * room(unsigned int size);
    void put(char c);
    void put(std::string_view text);

    // Parts of elements.
    void put_word(std::string_view text);
    void put_hex(unsigned char byte);
    void put_hex_bytes(unsigned char const * data, unsigned int size);
    void put_line();
    void flush();

    ITextTarget & m_target;
    Options const m_options;
    impl::WriteContainers m_containers;
    unsigned int m_lists = 0; // open lists, which determine the indent
    unsigned int m_size = 0;
    EState m_state = eState_Open;
    char m_buffer[sm_bufferSize];
};

} // namespace vxserialize
