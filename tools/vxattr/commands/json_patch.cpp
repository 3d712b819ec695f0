#include "vxattr/commands/json_patch.h"

#include "vxattr/commands/path_step_scope.h"
#include "vxattr/failure.h"
#include "vxattr/visible_text.h"
#include "vxattribute/difference.h"
#include "vxattribute/elements.h"
#include "vxattribute/map_path.h"
#include "vxattribute/sorted_by_name.h"
#include "vxcore/text_conversion.h"
#include "vxcore/text_size.h"
#include "vxjson/text_writer.h"

#include <cmath>
#include <optional>
#include <type_traits>

namespace vxattr {

using namespace vxattribute;

namespace {

/// The types that JSON has, too.
template <typename T>
constexpr bool isPlain =
    std::is_same_v<T, bool> || std::is_same_v<T, long long> || std::is_same_v<T, double> ||
    std::is_same_v<T, std::string> || std::is_same_v<T, AttributeMap>;

/// Writes values as JSON that any program reads: doubles as numbers, and no "vxserialize".
class PlainJson {
  public:
    /// @param path  Of the value that is written, for messages.
    PlainJson(vxjson::TextWriter & writer, std::string const & file, std::string const & path)
        : m_writer(writer), m_file(file), m_path(path) {}

    /// The recursion is bounded: readers limit how deep maps from files nest.
    void write(AttributeValue const & value) {
        bool const isArray = value.size() != 1 && !value.is_null();
        if (isArray) {
            m_writer.begin_array();
        }
        bool const isNull = !visit_elements(value, [&]<typename T>(std::span<T const> list) {
            if constexpr (isPlain<T>) {
                write_elements(list, isArray);
            } else {
                fail("JSON cannot hold a value of type " + std::string(value.type().name()));
            }
        });
        if (isNull) {
            m_writer.write_null();
        } else if (isArray) {
            m_writer.end_array();
        }
    }

  private:
    template <typename T>
    void write_elements(std::span<T const> list, bool isArray) {
        for (std::size_t i = 0; i != list.size(); ++i) {
            std::optional<PathStepScope> step;
            if (isArray) {
                step.emplace(m_path, vxcore::to_string(static_cast<unsigned long long>(i)));
            }
            write_element(list[i]);
        }
    }

    void write_element(bool element) { m_writer.write_bool(element); }

    void write_element(long long element) { m_writer.write_integer(element); }

    void write_element(double element) {
        if (!std::isfinite(element)) {
            fail("JSON has no numbers for NaN and infinities");
        }
        m_writer.write_double(element);
    }

    void write_element(std::string const & element) {
        m_writer.write_string(element.data(), vxcore::text_size(element.size()));
    }

    void write_element(AttributeMap const & map) {
        m_writer.begin_object();
        for (auto const & element : sorted_by_name(map)) {
            PathStepScope const step(m_path, path_step(element->first.value()));
            m_writer.write_name(element->first.data(), element->first.size());
            write(element->second);
        }
        m_writer.end_object();
    }

    [[noreturn]] void fail(std::string const & what) const {
        throw Failure(m_file + ": " + shown_path(m_path), what);
    }

    vxjson::TextWriter & m_writer;
    std::string const & m_file;
    std::string m_path;
};

void write_member(vxjson::TextWriter & writer, std::string_view name, std::string_view text) {
    writer.write_name(name.data(), vxcore::text_size(name.size()));
    writer.write_string(text.data(), vxcore::text_size(text.size()));
}

/// @param pointer  The path as RFC 6901 has it.
void append_operation(std::string & text, Difference const & difference,
                      std::string const & pointer, std::string const & file) {
    vxjson::TextWriter::Options options;
    options.validate_utf8 = true;
    options.max_depth = 1024; // readers of files accept fewer
    vxjson::TextWriter writer(text, options);
    writer.begin_object();
    write_member(writer, "op",
                 difference.is_added()     ? "add"
                 : difference.is_removed() ? "remove"
                                           : "replace");
    write_member(writer, "path", pointer);
    if (!difference.is_removed()) {
        writer.write_name("value", 5);
        PlainJson(writer, file, difference.path).write(*difference.new_value);
    }
    writer.end_object();
    writer.finish();
}

bool is_one_map(AttributeValue const & value) {
    return value.type() == ValueTypeId::typeAttributeMap && value.size() == 1;
}

} // namespace

std::string json_patch(AttributeValue const & a, AttributeValue const & b,
                       std::string const & fileOfB) {
    bool const areMaps = is_one_map(a) && is_one_map(b);
    std::string text = "[";
    visit_differences(a, b, [&](Difference const & difference) {
        // The empty path is that of the name without characters, or of values that are no maps.
        bool const isWhole = difference.path.empty() && !areMaps;
        text += text.size() == 1 ? "\n" : ",\n";
        with_place(fileOfB + ": " + shown_path(difference.path), [&] {
            append_operation(text, difference, isWhole ? "" : "/" + difference.path, fileOfB);
        });
    });
    text += text.size() == 1 ? "]\n" : "\n]\n";
    return text;
}

} // namespace vxattr
