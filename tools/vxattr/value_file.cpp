#include "value_file.h"

#include "failure.h"
#include "input.h"
#include "json_file.h"
#include "sorted_stream.h"
#include "sorted_trace.h"

#include "vxattribute/attribute_access.h"
#include "vxattribute/attribute_name_decoder.h"
#include "vxattribute/attribute_name_encoder.h"
#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/trace_formatter.h"
#include "vxcore/error_exception.h"
#include "vxcore/text_conversion.h"
#include "vxserialize/error_codes.h"
#include "vxserialize/memory_reader.h"
#include "vxserialize/memory_writer.h"
#include "vxserialize/text_reader.h"

#include <CLI/CLI.hpp>

namespace vxattr {

using namespace vxattribute;

namespace {

using PackageSetPtr = AttributeNamePackageSet::Ptr;

constexpr unsigned long long maxMaxSize = 0xFFFFFFFF; // bytes of one binary stream

AttributeValue read_stream(vxserialize::Reader & reader, PackageSetPtr const & packages) {
    // A decoder reads coded and plain streams alike.
    AttributeNameDecoder decoder(packages, packages != nullptr);
    if (reader.next_type() == vxserialize::eElement_List) {
        return AttributeValue(AttributeMap(reader, decoder)); // no value starts with a list
    }
    AttributeValue value;
    read_attribute_value(reader, decoder, value);
    return value;
}

AttributeValue read_binary(Input & input, PackageSetPtr const & packages) {
    vxserialize::MemoryReader reader(input.read_all());
    auto const place = [&] {
        return vxcore::to_string(reader.memory_list()->size() - reader.bytes_left());
    };
    AttributeValue value;
    try {
        value = read_stream(reader, packages);
    } catch (vxcore::ErrorException const & e) {
        if (e.info()->matches(vxserialize::error::vxserialize)) {
            throw; // tells the place itself
        }
        throw std::runtime_error(message_of(e) + " (before byte " + place() + ')');
    }
    if (reader.bytes_left() != 0) {
        throw std::runtime_error("the value ends at byte " + place() + ", and more follows");
    }
    return value;
}

/// The reader has read ahead, so only another read tells the end from more text.
void check_end(vxserialize::TextReader & reader) {
    std::string reason = "null";
    try {
        reader.read_null();
    } catch (vxcore::ErrorException const & e) {
        if (e.info()->matches(vxserialize::error::vxserialize_data_truncated)) {
            return;
        }
        reason = message_of(e);
    }
    throw std::runtime_error("more follows the value: " + reason);
}

AttributeValue read_text(Input & input, PackageSetPtr const & packages) {
    vxserialize::TextReader reader(input, 1 << 16);
    AttributeValue value = read_stream(reader, packages);
    check_end(reader);
    return value;
}

EForm form_for(std::string const & path, std::string const & name) {
    if (!name.empty()) {
        return form_of(name);
    }
    for (auto const & [ending, form] :
         {std::pair(".json", EForm::eJson), {".txt", EForm::eText}, {".bin", EForm::eBinary}}) {
        if (path.ends_with(ending)) {
            return form;
        }
    }
    throw UsageFailure("--to is needed: the output's name does not end in .json, .bin or .txt");
}

void write_stream(vxserialize::Writer & writer, AttributeValue const & value,
                  WriteOptions const & options, NamePackages const & packages) {
    AttributeNameEncoder encoder(options.plainNames ? nullptr : packages.set());
    if (options.sorted) {
        write_sorted(writer, encoder, value);
    } else {
        write_attribute_value(writer, encoder, value);
    }
}

} // namespace

void add_read_options(CLI::App & command, ReadOptions & options) {
    command
        .add_option("--from", options.from, "Form of the input: json, binary or text; else guessed")
        ->check(CLI::IsMember({"json", "binary", "text"}));
    command
        .add_option("--package", options.packages.files,
                    "File of a name package that the streams use; may be given again")
        ->take_all()
        ->expected(1);
    command.add_option("--max-size", options.maxSize, "Most bytes of an input")
        ->check(CLI::Range(1ull, maxMaxSize))
        ->capture_default_str();
    command.add_flag("--strict", options.strict,
                     "What reading JSON would lose is a failure, not a notice");
}

void add_write_options(CLI::App & command, WriteOptions & options) {
    command
        .add_option("--to", options.to,
                    "Form of the output: json, binary, text or trace; else by its name's ending "
                    "(.json, .bin, .txt)")
        ->check(CLI::IsMember({"json", "binary", "text", "trace"}));
    command
        .add_option("--indent", options.indent, "Blanks per level of JSON and text; 0: one line")
        ->check(CLI::Range(0u, 64u));
    command.add_flag("--sorted", options.sorted, "Names in the order of their bytes");
    command.add_flag("--plain-names", options.plainNames, "Do not code names on output");
    command.add_option("--wrap", options.wrap,
                       "Put a value that JSON shows as a scalar into an object, under that name");
}

AttributeValue read_value(std::string const & path, ReadOptions const & options,
                          FileFacts * facts) {
    PackageSetPtr const & packages = options.packages.set();
    Input input(path, options.maxSize);
    return with_place(input.place(), [&] {
        EForm const form = options.from.empty() ? guess_form(input.head()) : form_of(options.from);
        AttributeValue value = form == EForm::eJson   ? read_json(input, options.strict)
                               : form == EForm::eText ? read_text(input, packages)
                                                      : read_binary(input, packages);
        if (facts != nullptr) {
            *facts = {form == EForm::eJson   ? "json"
                      : form == EForm::eText ? "text"
                                             : "binary",
                      input.received()};
        }
        return value;
    });
}

AttributeMap read_map(std::string const & path, ReadOptions const & options) {
    AttributeValue const value = read_value(path, options);
    if (value.type() != ValueTypeId::typeAttributeMap || value.size() != 1) {
        throw Failure(path, "its value is not one map");
    }
    return value.get<AttributeMap>();
}

void check_output_form(std::string const & path, WriteOptions const & options) {
    form_for(path, options.to);
}

void write_value(Output & output, std::string const & path, AttributeValue const & value,
                 WriteOptions const & options, NamePackages const & packages) {
    EForm const form = form_for(path, options.to);
    if (form == EForm::eJson) {
        write_json(output, value, {options.indent, options.sorted, options.wrap});
    } else if (form == EForm::eBinary) {
        vxserialize::MemoryWriter writer;
        write_stream(writer, value, options, packages);
        output.write(*writer.close_and_detach_memory_list());
    } else if (form == EForm::eText) {
        vxserialize::TextWriter writer(output, {options.indent});
        write_stream(writer, value, options, packages);
        writer.close();
        output.write("\n");
    } else {
        OutputStream stream(output, output.is_terminal());
        write_sorted_trace(stream, value, defaultTraceFormatter, 0);
        stream << '\n';
        stream.finish();
    }
}

} // namespace vxattr
