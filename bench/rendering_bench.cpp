// Renders the settings document as text for people: our trace beside handwritten code for the same
// text.

#include "documents.h"
#include "measure.h"

#include "vxattribute/trace_formatter.h"

#include <algorithm>
#include <ostream>
#include <sstream>

#ifdef VX_BENCH_FMT
#include <fmt/compile.h>
#include <fmt/format.h>

#include <iterator>
#endif

namespace vxbench {

namespace {

std::string indent(unsigned int level) {
    return std::string(2 * std::size_t(level), ' ');
}

std::string_view type_of(PlainValue const & value) {
    static constexpr std::string_view names[] = {"Null", "Boolean", "Integer", "Double", "String"};
    return names[value.data.index()];
}

/// Writes through the operators of std::ostream.
class StreamRenderer {
  public:
    static std::string render(PlainMap const & map) {
        std::ostringstream stream;
        StreamRenderer(stream).map(map, 0);
        return stream.str();
    }

  private:
    explicit StreamRenderer(std::ostream & stream) : m_stream(stream) {}

    void map(PlainMap const & map, unsigned int level) {
        std::string const blanks = indent(level);
        for (auto const & [name, value] : map) {
            m_stream << "\n " << blanks << '\'' << name << "' => [";
            if (auto const * const list = std::get_if<PlainList>(&value.data)) {
                m_stream << type_of(list->front()) << ": {";
                char const * separator = "";
                for (PlainValue const & element : *list) {
                    m_stream << separator;
                    scalar(element);
                    separator = ", ";
                }
                m_stream << "}]";
            } else if (auto const * const inner = std::get_if<PlainMap>(&value.data)) {
                m_stream << "AttributeMap: \n " << blanks << " {";
                this->map(*inner, level + 1);
                m_stream << "\n " << blanks << " }]";
            } else {
                m_stream << type_of(value) << ": {";
                scalar(value);
                m_stream << "}]";
            }
        }
    }

    void scalar(PlainValue const & value) {
        if (auto const * const text = std::get_if<std::string>(&value.data)) {
            m_stream << '"' << *text << '"';
        } else if (auto const * const number = std::get_if<long long>(&value.data)) {
            m_stream << *number;
        } else if (auto const * const real = std::get_if<double>(&value.data)) {
            m_stream << *real;
        } else {
            m_stream << (std::get<bool>(value.data) ? "true" : "false");
        }
    }

    std::ostream & m_stream;
};

#ifdef VX_BENCH_FMT
/// Writes through fmt into its own buffer, with formats that are parsed at compile time.
class FmtRenderer {
  public:
    static std::string render(PlainMap const & map) {
        FmtRenderer renderer;
        renderer.map(map, 0);
        return fmt::to_string(renderer.m_buffer);
    }

  private:
    template <typename Format, typename... Args>
    void put(Format const & format, Args const &... args) {
        fmt::format_to(std::back_inserter(m_buffer), format, args...);
    }

    void put_text(std::string_view text) {
        m_buffer.append(text.data(), text.data() + text.size());
    }

    void map(PlainMap const & map, unsigned int level) {
        std::string const blanks = indent(level);
        for (auto const & [name, value] : map) {
            put(FMT_COMPILE("\n {}'{}' => ["), blanks, name);
            if (auto const * const list = std::get_if<PlainList>(&value.data)) {
                put(FMT_COMPILE("{}: {{"), type_of(list->front()));
                std::string_view separator;
                for (PlainValue const & element : *list) {
                    put_text(separator);
                    scalar(element);
                    separator = ", ";
                }
                put_text("}]");
            } else if (auto const * const inner = std::get_if<PlainMap>(&value.data)) {
                put(FMT_COMPILE("AttributeMap: \n {} {{"), blanks);
                this->map(*inner, level + 1);
                put(FMT_COMPILE("\n {} }}]"), blanks);
            } else {
                put(FMT_COMPILE("{}: {{"), type_of(value));
                scalar(value);
                put_text("}]");
            }
        }
    }

    void scalar(PlainValue const & value) {
        if (auto const * const text = std::get_if<std::string>(&value.data)) {
            put(FMT_COMPILE("\"{}\""), *text);
        } else if (auto const * const number = std::get_if<long long>(&value.data)) {
            put(FMT_COMPILE("{}"), *number);
        } else if (auto const * const real = std::get_if<double>(&value.data)) {
            put(FMT_COMPILE("{}"), *real);
        } else {
            put_text(std::get<bool>(value.data) ? "true" : "false");
        }
    }

    fmt::memory_buffer m_buffer;
};
#endif

std::string render(vxattribute::AttributeMap const & map) {
    std::ostringstream stream;
    map.write_trace(stream, vxattribute::defaultTraceFormatter, 0);
    return stream.str();
}

/// Returns the lines in alphabetical order. Maps are ordered by address.
std::string sorted_lines(std::string const & text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    std::sort(lines.begin(), lines.end());
    std::string sorted;
    for (std::string const & line : lines) {
        sorted += line + '\n';
    }
    return sorted;
}

template <typename Render>
void add_render(char const * peer, Render render_document) {
    add("render_settings", peer, [render_document](benchmark::State & state) {
        Document const & document = documents()[0];
        if (sorted_lines(render_document(document)) != sorted_lines(render(document.map))) {
            state.SkipWithError("another text");
        }
        measure(state, document.attributes, [&] {
            std::string const text = render_document(document);
            benchmark::DoNotOptimize(text);
        });
    });
}

} // namespace

void add_rendering_benchmarks() {
    add_render("vxattribute", [](Document const & document) { return render(document.map); });
    add_render("ostream",
               [](Document const & document) { return StreamRenderer::render(document.plain); });
#ifdef VX_BENCH_FMT
    add_render("fmt",
               [](Document const & document) { return FmtRenderer::render(document.plain); });
#endif
}

} // namespace vxbench
