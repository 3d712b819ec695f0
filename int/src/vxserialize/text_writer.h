#pragma once

#include "vxserialize/containers_impl.h"
#include "vxserialize/writer.h"

namespace vxserialize {

/// Writes the text form, which a person can read and any text can carry: printable ASCII without
/// quotes, backslashes and control characters. The form is told in docs/formats/text.md.
///
///     TextWriter writer(target, TextWriter::Options());
///     writer << "port" << 8080;
///     writer.close();                         // the target got: <port> 8080
///
/// Text goes through a small buffer inside the writer, so a value never stands in memory as a
/// whole.
///
/// Errors. Beside those of Writer, what the target raises passes through. Drop the writer then:
/// every later call raises `error.vxserialize.usage`, since the target may have got half an
/// element.
class VXSERIALIZE_API TextWriter final : public Writer {
  public:
    /// Where the text goes, in pieces cut anywhere.
    class ITextTarget {
      public:
        virtual void write_char(char c) = 0;
        virtual void write_data(char const * data, unsigned int size) = 0;

      protected:
        ITextTarget() = default;
        ITextTarget(ITextTarget const &) = default;
        ITextTarget & operator=(ITextTarget const &) = default;
        ~ITextTarget() = default;
    };

    /// With all fields zero the text is one line.
    struct Options {
        /// Blanks that each list indents its elements by, a line for each element; 0: no lines. The
        /// line feeds are the one control character that the text holds then.
        unsigned int indent = 0;
    };

    /// @param target  Must outlive the writer.
    TextWriter(ITextTarget & target, Options const & options);
    TextWriter(TextWriter const &) = delete;
    TextWriter & operator=(TextWriter const &) = delete;

    /// Without `close()` the end of the text is lost.
    ~TextWriter() override;

    /// Hands the rest of the text to the target. A second call does nothing.
    ///
    /// @raises error.vxserialize.usage: a list or record is open.
    void close();

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
    void begin_list(unsigned int count) override;
    void next_list_item() override;
    void end_list() override;
    void begin_record() override;
    void end_record() override;

  private:
    static constexpr unsigned int sm_bufferSize = 256;

    enum EState : unsigned char { eState_Open, eState_Closed, eState_Failed };

    void check_open() const;
    void begin_element();
    void put(char c);
    void put(std::string_view text);
    void put_word(std::string_view text);
    void put_hex(unsigned char byte);
    void put_hex_bytes(unsigned char const * data, unsigned int size);
    void put_line();
    void flush();

    ITextTarget & m_target;
    Options const m_options;
    impl::WriteContainers m_containers;
    unsigned int m_lists = 0; // open ones, which set the indent
    unsigned int m_size = 0;
    EState m_state = eState_Open;
    char m_buffer[sm_bufferSize];
};

} // namespace vxserialize
