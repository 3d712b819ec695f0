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

/// Every choice of how values and maps are rendered as text: limits, line starts, separators, the
/// frames of lists. docs/guide/traces.md shows them at work.
///
/// A handle on immutable, shared settings: a copy is one count. To make other settings, change a
/// copy of some with a Composer:
///
///     TraceFormatter const brief = TraceFormatter::Composer().show_type(false).compose();
///     value.write_trace(std::cerr, brief, 0);
///
/// Line feeds in the texts are not written as they stand: each becomes `line_prefix` and `indent`,
/// the latter once per level of indentation. `line_prefix` and `indent` themselves go out raw.
///
/// Trace text is for people; nobody should parse it.
///
/// Threads. One formatter may be read from any number of threads. A Composer belongs to one.
class VXATTRIBUTE_API TraceFormatter {
  public:
    class Composer;
    class ListParams;

    /// Shares the default settings, which are those of `defaultTraceFormatter`.
    TraceFormatter();

    TraceFormatter(TraceFormatter const &) noexcept = default;
    TraceFormatter & operator=(TraceFormatter const &) noexcept = default;
    ~TraceFormatter() = default;

    // The settings, with their defaults.

    /// Wrap each value in its type name. true
    bool show_type() const noexcept;
    /// Sort the elements of each map by the bytes of their names. false: map order, which differs
    /// from process to process. Sorting takes an allocation per map.
    bool sorted_names() const noexcept;
    /// Most elements shown of one value. 32
    unsigned int max_multivalue_count() const noexcept;
    /// A list of strings has a line for each string when any but the first has so many bytes, or
    /// any holds a line feed. 128
    unsigned int multiline_length_threshold() const noexcept;
    /// Most bytes shown of one string. 4096
    unsigned int max_string_len() const noexcept;
    /// Most bytes shown of one binary value; 0 shows its size alone. 256
    unsigned int max_binary_value_dump_bytes() const noexcept;
    /// Bytes on a line of a dump; 0 as above. 32
    unsigned int binary_value_dump_line_size() const noexcept;
    /// Begins every new line. A line feed and a blank
    vxcore::SourceString const & line_prefix() const noexcept;
    /// Follows it once per level. Two blanks
    vxcore::SourceString const & indent() const noexcept;
    /// Stands for a null ErrorInfo. ##NULL##
    vxcore::SourceString const & error_info_null() const noexcept;
    /// Lists of all types without a list of their own. {1, 2}
    ListParams const & list_default() const noexcept;
    /// Lists of maps, of strings on one line and on lines of their own, of dumps, of errors.
    ListParams const & list_map() const noexcept;
    ListParams const & list_string_simple() const noexcept;
    ListParams const & list_string_multiline() const noexcept;
    ListParams const & list_binary_value_dump() const noexcept;
    ListParams const & list_error_info() const noexcept;
    /// Around the name and the value of a map's element.
    vxcore::SourceString const & map_element_prefix() const noexcept;
    vxcore::SourceString const & map_name_value_separator() const noexcept;
    vxcore::SourceString const & map_element_suffix() const noexcept;
    /// Around a string on lines of its own, and between two of its lines.
    vxcore::SourceString const & multiline_string_prefix() const noexcept;
    vxcore::SourceString const & multiline_string_newline() const noexcept;
    vxcore::SourceString const & multiline_string_suffix() const noexcept;
    /// The same for the dump of a binary value.
    vxcore::SourceString const & binary_value_dump_prefix() const noexcept;
    vxcore::SourceString const & binary_value_dump_newline() const noexcept;
    vxcore::SourceString const & binary_value_dump_suffix() const noexcept;
    /// Before each line of an error.
    vxcore::SourceString const & error_info_line_prefix() const noexcept;

    /// Begins a new line: `line_prefix`, then `indent` as often as `level` says.
    std::ostream & indented(std::ostream & stream, unsigned int level) const;

    /// Writes a text with each of its line feeds as `indented` writes it; a carriage return before
    /// a line feed or at the end is dropped.
    std::ostream & render_indented(std::ostream & stream, unsigned int level, char const * data,
                                   unsigned int size) const;

    /// The same, but a text without any line feed goes out unchanged.
    std::ostream & render_indented(std::ostream & stream, unsigned int level,
                                   vxcore::SourceString const & text) const;

  private:
    friend class impl::TraceFormatterImpl;

    /// Of the base class, so that the type is complete wherever a formatter is copied.
    using Settings = vxcore::RefCounted<vxcore::AtomicRefCount>;

    explicit TraceFormatter(vxcore::RefCountPtr<Settings const> settings) noexcept
        : m_settings(std::move(settings)) {}

    vxcore::RefCountPtr<Settings const> m_settings;
};

/// The frame of a list of elements.
class VXATTRIBUTE_API TraceFormatter::ListParams {
  public:
    /// @param showForScalar  false: a value of exactly one element has no prefix and no suffix.
    ListParams(vxcore::SourceString prefix, vxcore::SourceString separator,
               vxcore::SourceString suffix, bool showForScalar) noexcept
        : m_prefix(std::move(prefix)), m_separator(std::move(separator)),
          m_suffix(std::move(suffix)), m_showForScalar(showForScalar) {}

    void swap(ListParams & other) noexcept { std::swap(*this, other); }

    vxcore::SourceString const & prefix() const noexcept { return m_prefix; }

    vxcore::SourceString const & separator() const noexcept { return m_separator; }

    vxcore::SourceString const & suffix() const noexcept { return m_suffix; }

    bool show_for_scalar() const noexcept { return m_showForScalar; }

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

/// Builds a formatter from the settings of another, one setter per setting.
///
/// Spent by `compose()`: whatever is called afterwards raises std::logic_error. A copy of a
/// Composer shares the settings with it, so once one of the two has composed, leave both alone.
class VXATTRIBUTE_API TraceFormatter::Composer {
  public:
    /// Starts from the defaults.
    Composer();

    /// Starts from the settings of `base`, which does not change.
    explicit Composer(TraceFormatter const & base);

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

    /// A formatter that takes the settings over.
    TraceFormatter compose();

  private:
    impl::TraceFormatterImpl & settings();

    vxcore::RefCountPtr<Settings> m_settings;
};

/// The most maps inside each other that a rendering shows. A value of maps below those shows only
/// how many it has, as left out. Each level takes stack, and each line is indented by its depth, so
/// that the text would grow with the square of the depth.
inline constexpr unsigned int max_trace_depth = 256;

/// The formatter that the library itself uses.
extern VXATTRIBUTE_API TraceFormatter const & defaultTraceFormatter;

} // namespace vxattribute
