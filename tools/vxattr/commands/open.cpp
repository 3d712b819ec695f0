#include "vxattr/commands/commands.h"
#include "vxattr/failure.h"
#include "vxattr/files/value_file.h"
#include "vxattr/keys/key_options.h"
#include "vxattr/place.h"
#include "vxattr/trace_options.h"

#include <CLI/CLI.hpp>
#include <memory>

namespace vxattr {

using namespace vxattribute;
using vxcrypto::Key;

namespace {

struct Options {
    std::string in;
    std::string out;
    std::string name;
    bool isShown = false;
    bool isKey = false;
    KeyOptions key;
    ReadOptions read;
    WriteOptions write;
    TraceOptions trace;
};

void show(AttributeValue const & opened, TraceOptions const & trace) {
    Output output("-", Output::EAccess::eOwnerOnly);
    OutputStream stream(output, trace.visible || output.is_terminal());
    opened.write_trace(stream, trace.formatter(), 0);
    stream << '\n';
    stream.finish();
    output.commit();
}

void check_options(Options const & options) {
    if (options.isShown == !options.out.empty()) {
        throw UsageFailure("what is opened goes to a file OUT, or is shown with --show");
    }
    if (options.out == "-") {
        throw UsageFailure("standard output takes opened values with --show only");
    }
    if (options.isKey && options.isShown) {
        throw UsageFailure("a key is not shown");
    }
    if (!options.isShown && !options.isKey) {
        check_output_form(options.out, options.write);
    }
}

int open(Options const & options) {
    check_options(options);
    check_output_spares_keys(options.out, {options.key.keyFile, options.key.dataKey});
    Key const key = load_key(options.key);
    AttributeValue const value = read_value(options.in, options.read);
    Place const place(options.in, value, options.name);
    SecuredValue const sealed =
        with_place(place.text(), [&] { return place.get().get<SecuredValue>(); });
    SecuredValue::ICipherProvider const & ciphers = SecuredValue::strict_cipher_provider();
    if (options.isKey) {
        Key const opened = with_place(
            place.text(), [&] { return sealed.extract_binary_as_key(key, ciphers, nullptr); });
        Output output(options.out, Output::EAccess::eOwnerOnly);
        output.write({opened.data(), opened.size()});
        output.commit();
        return eExit_Good;
    }
    AttributeValue const opened =
        with_place(place.text(), [&] { return sealed.extract(key, ciphers, nullptr); });
    if (options.isShown) {
        show(opened, options.trace);
        return eExit_Good;
    }
    Output output(options.out, Output::EAccess::eOwnerOnly);
    write_value(output, options.out, place.replaced(opened), options.write, options.read.packages);
    output.commit();
    return eExit_Good;
}

} // namespace

void add_open(CLI::App & app, Run & run) {
    auto const options = std::make_shared<Options>();
    CLI::App & command = *app.add_subcommand("open", "Open a sealed value into a file, or show it");
    command.add_option("IN", options->in, "Input file, - for standard input")->required();
    command.add_option("OUT", options->out, "Output file; only its owner may read it");
    command.add_option("--name", options->name,
                       "Open the attribute at this path; OUT gets the whole with it open");
    command.add_flag("--show", options->isShown, "Show what was opened on standard output");
    command.add_flag("--as-key", options->isKey, "A key was sealed: OUT gets its bytes");
    add_key_options(command, options->key);
    add_read_options(command, options->read);
    add_write_options(command, options->write);
    add_trace_options(*command.add_option_group("Rendering"), options->trace);
    command.footer("Examples:\n"
                   "  vxattr open server.json --show --name db/password --key-file disk.key\n"
                   "  vxattr open sealed.bin big.bin --key-file master.key --data-key big.key");
    command.callback([options, &run] { run = [options] { return open(*options); }; });
}

} // namespace vxattr
