#include "vxattr/commands/commands.h"
#include "vxattr/failure.h"
#include "vxattr/files/value_file.h"
#include "vxattribute/elements.h"
#include "vxcore/text_conversion.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <memory>
#include <unordered_set>

namespace vxattr {

using namespace vxattribute;

namespace {

struct Options {
    std::string in;
    ReadOptions read;
};

class Statistics {
  public:
    /// @param depth  The number of maps around the value.
    void add(AttributeValue const & value, unsigned int depth) {
        m_elements[static_cast<std::size_t>(value.type().id())] +=
            value.is_null() ? 1 : value.size();
        m_empty += value.empty() && !value.is_null();
        if (value.type() != ValueTypeId::typeAttributeMap) {
            return;
        }
        m_depth = std::max(m_depth, depth + 1);
        for (AttributeMap const & map : elements<AttributeMap>(value)) {
            m_attributes += map.size();
            for (auto const & [name, inner] : map) {
                m_names.insert(name);
                add(inner, depth + 1);
            }
        }
    }

    void write(Output & output, FileFacts const & facts) const {
        line(output, "form", facts.form);
        line(output, "bytes", vxcore::to_string(facts.bytes));
        line(output, "depth", vxcore::to_string(m_depth));
        line(output, "attributes", vxcore::to_string(m_attributes));
        line(output, "names", vxcore::to_string(static_cast<unsigned long long>(m_names.size())));
        line(output, "empty values", vxcore::to_string(m_empty));
        for (std::size_t id = 0; id != m_elements.size(); ++id) {
            if (m_elements[id] != 0) {
                line(output, ValueTypeId::from_id(static_cast<ValueTypeId::EId>(id)).name(),
                     vxcore::to_string(m_elements[id]));
            }
        }
    }

  private:
    static void line(Output & output, std::string const & what, std::string const & count) {
        output.write(what + std::string(16 - std::min<std::size_t>(what.size(), 15), ' ') + count +
                     '\n');
    }

    std::array<unsigned long long, ValueTypeId::count>
        m_elements{}; // by type number; a null counts as one
    unsigned long long m_empty = 0;
    unsigned long long m_attributes = 0;
    unsigned int m_depth = 0;
    std::unordered_set<AttributeName> m_names;
};

int stat(Options const & options) {
    FileFacts facts;
    AttributeValue const value = read_value(options.in, options.read, &facts);
    Statistics statistics;
    statistics.add(value, 0);
    Output output("-");
    statistics.write(output, facts);
    output.commit();
    return eExit_Good;
}

} // namespace

void add_stat(CLI::App & app, Run & run) {
    auto const options = std::make_shared<Options>();
    CLI::App & command = *app.add_subcommand(
        "stat", "Count what is in a file: elements by type, names, depth, bytes");
    command.add_option("FILE", options->in, "Input file, - for standard input")->required();
    add_read_options(command, options->read);
    command.footer(
        "'attributes' counts names with a value at every depth, 'names' different names,\n"
        "a line with a type's name the elements of that type.\n"
        "Example:\n"
        "  vxattr stat records.bin");
    command.callback([options, &run] { run = [options] { return stat(*options); }; });
}

} // namespace vxattr
