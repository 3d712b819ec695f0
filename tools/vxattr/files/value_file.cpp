#include "vxattr/files/value_file.h"

#include "vxattr/failure.h"
#include "vxattr/files/form.h"
#include "vxattr/files/input.h"
#include "vxattr/files/json_file.h"
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

#include <stdexcept>

namespace vxattr {

using namespace vxattribute;

namespace {

using PackageSetPtr = AttributeNamePackageSet::Ptr;

AttributeValue read_stream(vxserialize::Reader & reader, PackageSetPtr const & packages) {
    // A decoder reads coded and plain names alike.
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
            throw; // its message has the place
        }
        throw std::runtime_error(message_of(e) + " (before byte " + place() + ')');
    }
    if (reader.bytes_left() != 0) {
        throw std::runtime_error("the value ends at byte " + place() + ", and more follows");
    }
    return value;
}

/// Raises when anything follows the value. The reader has read ahead, so only another read can show
/// whether the text ends here.
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

AttributeValue read_form(EForm form, Input & input, ReadOptions const & options) {
    switch (form) {
    case EForm::eJson:
        return read_json(input, options.strict);
    case EForm::eText:
        return read_text(input, options.packages.set());
    default:
        return read_binary(input, options.packages.set());
    }
}

EForm output_form(std::string const & path, std::string const & name) {
    if (!name.empty()) {
        return form_of(name);
    }
    if (path.ends_with(".json")) {
        return EForm::eJson;
    }
    if (path.ends_with(".txt")) {
        return EForm::eText;
    }
    if (path.ends_with(".bin")) {
        return EForm::eBinary;
    }
    throw UsageFailure("--to is needed: the output's name does not end in .json, .bin or .txt");
}

void write_stream(vxserialize::Writer & writer, AttributeValue const & value,
                  WriteOptions const & options, NamePackages const & packages) {
    AttributeNameEncoder encoder(options.plainNames ? nullptr : packages.set());
    write_attribute_value(writer, encoder, value, StreamOptions{options.sorted});
}

void write_binary(Output & output, AttributeValue const & value, WriteOptions const & options,
                  NamePackages const & packages) {
    vxserialize::MemoryWriter writer;
    write_stream(writer, value, options, packages);
    output.write(*writer.close_and_detach_memory_list());
}

void write_text(Output & output, AttributeValue const & value, WriteOptions const & options,
                NamePackages const & packages) {
    vxserialize::TextWriter writer(output, {options.indent});
    write_stream(writer, value, options, packages);
    writer.close();
    output.write("\n");
}

void write_trace(Output & output, AttributeValue const & value) {
    OutputStream stream(output, output.is_terminal());
    value.write_trace(stream, TraceFormatter::Composer().sorted_names(true).compose(), 0);
    stream << '\n';
    stream.finish();
}

} // namespace

AttributeValue read_value(std::string const & path, ReadOptions const & options,
                          FileFacts * facts) {
    options.packages.set(); // failures of the packages come first, and have places of their own
    Input input(path, options.maxSize);
    return with_place(input.place(), [&] {
        EForm const form = options.from.empty() ? guess_form(input.head()) : form_of(options.from);
        AttributeValue value = read_form(form, input, options);
        if (facts != nullptr) {
            *facts = {name_of(form), input.received()};
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
    output_form(path, options.to);
}

void write_value(Output & output, std::string const & path, AttributeValue const & value,
                 WriteOptions const & options, NamePackages const & packages) {
    switch (output_form(path, options.to)) {
    case EForm::eJson:
        write_json(output, value, {options.indent, options.sorted, options.wrap});
        break;
    case EForm::eBinary:
        write_binary(output, value, options, packages);
        break;
    case EForm::eText:
        write_text(output, value, options, packages);
        break;
    default:
        write_trace(output, value);
        break;
    }
}

} // namespace vxattr
