#pragma once

#include "vxcore/error_info.h"
#include "vxjson/writer.h"

#include <string>
#include <string_view>

namespace vxjson {

namespace impl {
class TextOutput;
}

/// Writes JSON text (RFC 8259): one value with everything in it.
///
///     std::string text;
///     TextWriter writer(text);
///     writer.begin_array();
///     writer.write_string("a", 1);
///     writer.end_array();
///     writer.finish();                    // text is ["a"]
///
/// Doubles are written with the fewest digits that read back as the same double, and always look
/// like doubles ("1.0", "-0.0"). Names may be empty and may be repeated.
///
/// Cost. Text goes through a buffer of 4 KiB inside the writer, so do not put many writers on the
/// stack. Long strings without escapes bypass the buffer. Memory grows by one byte per level of
/// depth. Each call is O(size of its text and indentation).
///
/// Threads. One object belongs to one thread at a time.
///
/// Errors. Each call checks its arguments before it writes. When the check raises, nothing is
/// written and the writer can still be used.
/// - error.vxjson.writer.unexpected.name: a name outside an object, or in place of a value.
/// - error.vxjson.writer.unexpected.literal, .number, .string, .container.begin: a value in place
///   of a name, after the end of the document, or inside a string; a container beyond `max_depth`.
/// - error.vxjson.writer.unexpected.container.end: the wrong bracket, or a name without its value.
/// - error.vxjson.writer.unexpected.string.data, .string.end: outside `begin_string`.
/// - error.vxjson.writer.unexpected.character: ill-formed UTF-8 where UTF-8 is checked, or text
///   that is no number; `offset` counts from the start of the call's data.
/// - error.vxjson.writer.unsupported.value.nan, .inf: JSON has no such numbers.
/// - error.vxjson.writer.config.invalidExponent: see Options; raised on construction.
///
/// Exceptions of the target pass through, as does `std::bad_alloc` from the string. Part of a value
/// may have been written by then, so every later call raises as a call out of place.
class VXJSON_API TextWriter final : public Writer {
  public:
    /// Receives the text. The destructor is protected: never delete through this interface.
    class ITextTarget {
      public:
        /// Takes the next piece of the text: `size` bytes, cut anywhere, valid during the call. It
        /// may raise: the exception passes through the call of the writer, which then accepts no
        /// more calls.
        virtual void write_data(char const * data, unsigned int size) = 0;

      protected:
        ITextTarget() = default;
        ITextTarget(ITextTarget const &) = default;
        ITextTarget & operator=(ITextTarget const &) = default;
        ~ITextTarget() = default;
    };

    /// The layout of the text, and the limits. Fixed for the life of the writer.
    struct Options {
        unsigned int indent = 0;    ///< blanks per level, one value per line; 0: no blanks or lines
        bool ascii_only = false;    ///< escape U+0080 and above; checks UTF-8 too
        bool validate_utf8 = false; ///< if not, bytes from 0x80 on pass unchanged
        unsigned int max_depth = 256; ///< objects and arrays open at the same time

        /// A double of at least 10^min_exponent and below 10^(max_exponent + 1) is written without
        /// an exponent. -324 <= min_exponent <= 0 <= max_exponent <= 308.
        int min_exponent = -6;
        int max_exponent = 20;
    };

    /// Writes to a target.
    ///
    /// @param target  Must outlive the writer. It receives text whenever the buffer is full, and
    ///                the rest from `finish()`.
    /// @raises error.vxjson.writer.config.invalidExponent: limits of exponents out of range.
    explicit TextWriter(ITextTarget & target);
    TextWriter(ITextTarget & target, Options const & options);

    /// Appends to a string.
    ///
    /// @param text  Must outlive the writer. Its content stays before the new text, which is
    ///              incomplete until `finish()`.
    /// @raises error.vxjson.writer.config.invalidExponent: limits of exponents out of range.
    explicit TextWriter(std::string & text);
    TextWriter(std::string & text, Options const & options);

    TextWriter(TextWriter const &) = delete;
    TextWriter & operator=(TextWriter const &) = delete;

    /// Does not write: without `finish()` the end of the text is lost.
    ~TextWriter();

    /// Passes the rest of the text to the target. Call it once the value is complete; a second call
    /// does nothing.
    ///
    /// @raises error.vxjson.writer.unexpected.container: an object or array is open.
    /// @raises error.vxjson.writer.unexpected.string: a string is open.
    /// @raises error.vxjson.writer.unexpected: nothing was written.
    void finish();

    /// As in Writer. The class comment lists the errors. Names, strings and pieces of strings are
    /// escaped; numbers given as text are checked and written unchanged.
    void write_name(char const * data, unsigned int size) override;
    void write_number(char const * data, unsigned int size) override;
    void write_string(char const * data, unsigned int size) override;
    void write_bool(bool value) override;
    void write_integer(long long value) override;
    void write_unsigned(unsigned long long value) override;
    void write_double(double value) override;
    void write_null() override;
    void begin_object() override;
    void end_object() override;
    void begin_array() override;
    void end_array() override;
    void begin_string() override;
    void write_string_data(char const * data, unsigned int size) override;
    void end_string() override;

  private:
    friend class impl::TextOutput;

    static constexpr unsigned int sm_bufferSize = 4096;

    /// The bytes that any short piece of text needs at most: a number of 20 or a text of 15, with
    /// comma, quotes, colon and blank.
    static constexpr unsigned int sm_room = 32;

    /// What was written last in the innermost open container, or in the document. Only the first
    /// has its bit set: then a comma is due.
    enum EState : unsigned char {
        eState_Empty = 0,  // nothing yet
        eState_Full = 1,   // a value
        eState_Named = 2,  // a name
        eState_String = 4, // a part of a string
        eState_Failed = 8, // the target has failed: no more calls
    };

    /// What may come next. Follows from the state and the innermost container.
    enum EPlace : unsigned char {
        ePlace_Top,
        ePlace_Done,
        ePlace_Name,      // a name or the end of the object
        ePlace_NameValue, // the value of the name just written
        ePlace_Element,   // an element or the end of the array
        ePlace_String,    // data or the end of the string
        ePlace_Failed,    // nothing
    };

    /// One of `target` and `text` is null.
    TextWriter(ITextTarget * target, std::string * text, Options const & options);

    // The order of calls.
    EPlace place() const noexcept;
    bool is_value_due() const noexcept;
    void check_place(EPlace place, vxcore::ErrorCode const & code, char const * function) const;
    void check_value(vxcore::ErrorCode const & code, char const * function) const;
    [[noreturn]] void throw_place(vxcore::ErrorCode const & code, char const * function) const;

    // What is written between and around values.
    void put_value(std::string_view text);
    void begin_line();
    void put_line();
    void grow_open(char bracketDue);

    /// Writes what separates the next name or value from the one before. Returns the place for it,
    /// with room for a short piece or `size` bytes and what is around them.
    char * begin_value(std::size_t size = 0) {
        if (m_options.indent != 0) {
            begin_line();
        }
        char * const at = room(size);
        *at = ',';
        return at + (m_state & eState_Full);
    }

    void end_value(char * at) noexcept {
        m_at = at;
        m_state = eState_Full;
    }

    // Names and strings (text_writer_strings.cpp).
    bool checks_utf8() const noexcept { return m_options.ascii_only || m_options.validate_utf8; }

    std::size_t check_text(std::string_view text, std::size_t offset, bool mayBeCut,
                           char const * function) const;
    std::string_view join_cut(std::string_view & text, char (&sequence)[4],
                              char const * function) const;
    void put_name(std::string_view name);
    void put_string(std::string_view text);
    char * put_quoted(std::string_view text, char const * function);
    void put_text(std::string_view text);
    template <bool High>
    void put_runs(std::string_view text);

    // The buffer.
    void put(std::string_view text);
    void flush();
    void send(std::string_view text);

    /// Returns the end of the text in the buffer, with room for `sm_room` bytes and `size` more.
    char * room(std::size_t size = 0) {
        if (m_at > m_buffer + (sm_bufferSize - sm_room - size)) [[unlikely]] {
            flush();
        }
        return m_at;
    }

    Options const m_options;
    ITextTarget * const m_target; // null if m_string is set
    std::string * const m_string; // null if m_target is set
    char * m_at = m_buffer;       // the end of the text in the buffer
    EState m_state = eState_Empty;
    unsigned long long const m_highBits; // those of bytes from 0x80 on if UTF-8 is checked, or none
    std::string m_open;                  // the closing brackets still to come, innermost last
    char m_cut[4];                       // the start of a UTF-8 sequence cut by the end of a piece
    unsigned int m_cutSize = 0;          // bytes in m_cut, 0 to 3
    char m_buffer[sm_bufferSize];
};

} // namespace vxjson
