#pragma once

#include "vxattribute/export.h"
#include "vxattribute/fwd.h"
#include "vxcore/ref_count_ptr.h"
#include "vxcore/source_string.h"

#include <iosfwd>
#include <utility>

namespace vxattribute {

namespace impl {
class TraceFormatterImpl;
}

/// How values and maps are rendered as text: limits, line starts, separators, frames of lists, the
/// order of names. docs/guide/traces.md has examples.
///
/// A formatter is a handle to shared, immutable settings; copying it increments a count. A Composer
/// makes a formatter with other settings:
///
///     TraceFormatter const brief = TraceFormatter::Composer().show_type(false).compose();
///     value.write_trace(std::cerr, brief, 0);
///
/// A line feed in a text setting is written as `line_prefix` and then `indent`, once per level of
/// indentation. `line_prefix` and `indent` themselves are written unchanged.
///
/// Trace text is for people: do not parse it.
///
/// Cost. A formatter is one pointer wide. Make one per purpose and keep it; making one copies all
/// settings. Limits bound the text: what is left out is shown as a number of elements or bytes.
///
/// Errors. The accessors raise nothing. Rendering raises what the stream raises, if its exceptions
/// are enabled, and std::bad_alloc; part of the text may have been written by then.
///
/// Threads. Any number of threads may use one formatter. Use a Composer from one thread only.
class VXATTRIBUTE_API TraceFormatter {
  public:
    class Composer;
    class ListParams;

    /// Shares the default settings, which are those of `defaultTraceFormatter`. Usable before the
    /// load-time code of this library has run; the settings are then made anew.
    TraceFormatter();

    /// Copies share the settings.
    TraceFormatter(TraceFormatter const &) noexcept = default;
    TraceFormatter & operator=(TraceFormatter const &) noexcept = default;
    ~TraceFormatter() = default;

    // The settings. References are valid as long as any formatter with these settings lives.

    /// Write the type name around each value, as in [Integer: {5}]. Default: true.
    bool show_type() const noexcept;
    /// Sort the elements of each map by the bytes of their names, with one allocation per map.
    /// Otherwise they are in map order, which differs from process to process. Default: false.
    bool sorted_names() const noexcept;
    /// Most elements shown of one value. The number of the others follows. Default: 32.
    unsigned int max_multivalue_count() const noexcept;
    /// A list of strings has a line for each string when any but the first has so many bytes, or
    /// any holds a line feed. Default: 128.
    unsigned int multiline_length_threshold() const noexcept;
    /// Most bytes shown of one string, less where the limit is within a UTF-8 sequence. Default:
    /// 4096.
    unsigned int max_string_len() const noexcept;
    /// Most bytes shown of one binary value; 0 shows only its size. Default: 256.
    unsigned int max_binary_value_dump_bytes() const noexcept;
    /// Bytes on a line of a dump; 0 shows only the size. Default: 32.
    unsigned int binary_value_dump_line_size() const noexcept;
    /// The start of every new line. Default: a line feed and a blank.
    vxcore::SourceString const & line_prefix() const noexcept;
    /// Follows `line_prefix` once per level. Default: two blanks.
    vxcore::SourceString const & indent() const noexcept;
    /// Written for a null ErrorInfo. Default: ##NULL##.
    vxcore::SourceString const & error_info_null() const noexcept;
    /// Lists of all types that have no setting of their own. Default: {1, 2}.
    ListParams const & list_default() const noexcept;
    /// Lists of maps, of strings on one line and on lines of their own, of dumps, of errors.
    /// Strings on one line are like list_default; the others put braces and comma on lines of their
    /// own.
    ListParams const & list_map() const noexcept;
    ListParams const & list_string_simple() const noexcept;
    ListParams const & list_string_multiline() const noexcept;
    ListParams const & list_binary_value_dump() const noexcept;
    ListParams const & list_error_info() const noexcept;
    /// Around the name and the value of a map's element. A new line with 'name' => before the
    /// value, and nothing after it
    vxcore::SourceString const & map_element_prefix() const noexcept;
    vxcore::SourceString const & map_name_value_separator() const noexcept;
    vxcore::SourceString const & map_element_suffix() const noexcept;
    /// Around a multi-line string, and between two of its lines. Each line in double quotes, two
    /// blanks in
    vxcore::SourceString const & multiline_string_prefix() const noexcept;
    vxcore::SourceString const & multiline_string_newline() const noexcept;
    vxcore::SourceString const & multiline_string_suffix() const noexcept;
    /// The same for the dump of a binary value. Default: each line two blanks in.
    vxcore::SourceString const & binary_value_dump_prefix() const noexcept;
    vxcore::SourceString const & binary_value_dump_newline() const noexcept;
    vxcore::SourceString const & binary_value_dump_suffix() const noexcept;
    /// Before each line of an error. Default: a new line and two blanks.
    vxcore::SourceString const & error_info_line_prefix() const noexcept;

    // For the renderers of other types. All write unformatted: flags and width of the stream do not
    // apply. They return the stream.

    /// Starts a new line: writes `line_prefix`, then `indent` `level` times.
    ///
    /// @param level  Maps around what is rendered; 0 outside of any.
    std::ostream & indented(std::ostream & stream, unsigned int level) const;

    /// Writes a text, calling `indented` in place of each line feed. A carriage return before a
    /// line feed or at the end is dropped.
    ///
    /// @param size  In bytes; `data` needs no terminator.
    std::ostream & render_indented(std::ostream & stream, unsigned int level, char const * data,
                                   unsigned int size) const;

    /// The same for a setting: a text without a line feed is written unchanged.
    std::ostream & render_indented(std::ostream & stream, unsigned int level,
                                   vxcore::SourceString const & text) const;

  private:
    friend class impl::TraceFormatterImpl;

    /// The base class of the settings: a complete type wherever a formatter is copied.
    using Settings = vxcore::RefCounted<vxcore::AtomicRefCount>;

    /// @param settings  Not null; a TraceFormatterImpl.
    explicit TraceFormatter(vxcore::RefCountPtr<Settings const> settings) noexcept
        : m_settings(std::move(settings)) {}

    vxcore::RefCountPtr<Settings const> m_settings;
};

/// The frame of a list of elements: what is written before, between and after them.
///
///     using Text = vxcore::SourceString;
///     TraceFormatter::ListParams frame(Text("<", true), Text("; ", true), Text(">", true), false);
///     // 5 is written as 5, and 5, 6 as <5; 6>
///
/// A plain value. Copying counts references at most and raises nothing.
class VXATTRIBUTE_API TraceFormatter::ListParams {
  public:
    /// @param showForScalar  When false, a value of exactly one element has no prefix or suffix.
    ListParams(vxcore::SourceString prefix, vxcore::SourceString separator,
               vxcore::SourceString suffix, bool showForScalar) noexcept
        : m_prefix(std::move(prefix)), m_separator(std::move(separator)),
          m_suffix(std::move(suffix)), m_showForScalar(showForScalar) {}

    /// Exchanges all parts.
    void swap(ListParams & other) noexcept { std::swap(*this, other); }

    /// The parts. References are valid until the object is changed or destroyed.
    vxcore::SourceString const & prefix() const noexcept { return m_prefix; }

    vxcore::SourceString const & separator() const noexcept { return m_separator; }

    vxcore::SourceString const & suffix() const noexcept { return m_suffix; }

    bool show_for_scalar() const noexcept { return m_showForScalar; }

    /// Replace one part. They return this object, so that calls can be chained.
    ListParams & prefix(vxcore::SourceString value) noexcept {
        m_prefix.swap(value);
        return *this;
    }

    ListParams & separator(vxcore::SourceString value) noexcept {
        m_separator.swap(value);
        return *this;
    }

    ListParams & suffix(vxcore::SourceString value) noexcept {
        m_suffix.swap(value);
        return *this;
    }

    ListParams & show_for_scalar(bool value) noexcept {
        m_showForScalar = value;
        return *this;
    }

  private:
    vxcore::SourceString m_prefix;
    vxcore::SourceString m_separator;
    vxcore::SourceString m_suffix;
    bool m_showForScalar;
};

/// Makes a formatter from the settings of another, with one setter per setting.
///
/// Ends with `compose()`: every call after it raises std::logic_error. A copy of a Composer shares
/// its settings, so do not use either of them after one has called `compose()`.
///
///     TraceFormatter const oneLine = TraceFormatter::Composer(base)
///                                        .show_type(false)
///                                        .max_string_len(80)
///                                        .compose();
///
/// Text settings that are literals cost nothing: pass `vxcore::SourceString("text", true)`.
class VXATTRIBUTE_API TraceFormatter::Composer {
  public:
    /// Starts from the defaults.
    Composer();

    /// Starts from the settings of `base`, which does not change.
    explicit Composer(TraceFormatter const & base);

    // The setters. Each is named after the accessor of TraceFormatter and returns this object. Any
    // value is allowed; an empty text writes nothing.
    //
    // @raises std::logic_error: `compose()` was called.

    Composer & show_type(bool value);
    Composer & sorted_names(bool value);
    Composer & max_multivalue_count(unsigned int value);
    Composer & multiline_length_threshold(unsigned int value);
    Composer & max_string_len(unsigned int value);
    Composer & max_binary_value_dump_bytes(unsigned int value);
    Composer & binary_value_dump_line_size(unsigned int value);
    Composer & line_prefix(vxcore::SourceString value);
    Composer & indent(vxcore::SourceString value);
    Composer & error_info_null(vxcore::SourceString value);
    Composer & list_default(ListParams value);
    Composer & list_map(ListParams value);
    Composer & list_string_simple(ListParams value);
    Composer & list_string_multiline(ListParams value);
    Composer & list_binary_value_dump(ListParams value);
    Composer & list_error_info(ListParams value);
    Composer & map_element_prefix(vxcore::SourceString value);
    Composer & map_name_value_separator(vxcore::SourceString value);
    Composer & map_element_suffix(vxcore::SourceString value);
    Composer & multiline_string_prefix(vxcore::SourceString value);
    Composer & multiline_string_newline(vxcore::SourceString value);
    Composer & multiline_string_suffix(vxcore::SourceString value);
    Composer & binary_value_dump_prefix(vxcore::SourceString value);
    Composer & binary_value_dump_newline(vxcore::SourceString value);
    Composer & binary_value_dump_suffix(vxcore::SourceString value);
    Composer & error_info_line_prefix(vxcore::SourceString value);

    /// Moves the settings into a formatter. No allocation.
    ///
    /// @raises std::logic_error: called before.
    TraceFormatter compose();

  private:
    /// The settings; raises when they were moved out.
    impl::TraceFormatterImpl & settings();

    vxcore::RefCountPtr<Settings> m_settings;
};

/// The depth of nested maps that a rendering shows. Of a value of deeper maps only their number is
/// shown, as left out. Each level takes stack. The text would also grow with the square of the
/// depth, since each line is indented by it.
inline constexpr unsigned int max_trace_depth = 256;

/// The formatter that the library itself uses: in `to_text`, in the stream operator of Attribute,
/// and in messages of Query. Its settings are the defaults and cannot be changed.
extern VXATTRIBUTE_API TraceFormatter const & defaultTraceFormatter;

} // namespace vxattribute
