#include "vxattr/files/value_file.h"

#include "vxattr/failure.h"
#include "vxattr/files/input.h"
#include "vxattr/files/json_file.h"
#include "vxattribute/attribute_access.h"
#include "vxattribute/trace_formatter.h"
#include "vxfile/value_file.h"

namespace vxattr {

using namespace vxattribute;
using vxfile::EFileForm;

namespace {

constexpr char trace[] = "trace"; // a form for people, which is only written

/// The form with this name, which the option parser has checked.
EFileForm form_of(std::string const & name) {
    for (EFileForm const form : {EFileForm::eJson, EFileForm::eBinary}) {
        if (name == vxfile::name_of(form)) {
            return form;
        }
    }
    return EFileForm::eText;
}

AttributeValue read_form(EFileForm form, Input & input, ReadOptions const & options) {
    if (form == EFileForm::eJson) {
        return read_json(input, options.strict);
    }
    auto const & packages = options.packages.set();
    return vxfile::read_value(
        input, form, {.packages = packages, .allow_unknown_packages = packages == nullptr});
}

EFileForm output_form(std::string const & path, std::string const & name) {
    if (!name.empty()) {
        return form_of(name);
    }
    if (auto const form = vxfile::form_of_ending(path)) {
        return *form;
    }
    throw UsageFailure("--to is needed: the output's name does not end in .json, .bin or .txt");
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
        EFileForm const form =
            options.from.empty() ? vxfile::guess_form(input.head()) : form_of(options.from);
        AttributeValue value = read_form(form, input, options);
        if (facts != nullptr) {
            *facts = {vxfile::name_of(form), input.received()};
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
    if (options.to == trace) {
        write_trace(output, value);
        return;
    }
    EFileForm const form = output_form(path, options.to);
    if (form == EFileForm::eJson) {
        write_json(output, value, {options.indent, options.sorted, options.wrap});
        return;
    }
    vxfile::write_value(output, value, form,
                        {.packages = options.plainNames ? nullptr : packages.set(),
                         .indent = options.indent,
                         .sorted_names = options.sorted});
}

} // namespace vxattr
