#include "vxattr/commands/commands.h"
#include "vxattr/failure.h"
#include "vxattr/files/value_file.h"
#include "vxattr/keys/key_options.h"
#include "vxattr/keys/sealed_values.h"
#include "vxattr/place.h"

#include <CLI/CLI.hpp>
#include <memory>

namespace vxattr {

using namespace vxattribute;

namespace {

struct Options {
    std::string in;
    std::string name;
    KeyOptions key;
    ReadOptions read;
};

/// The reason why the value cannot be authenticated with the key; empty when it can.
std::string fault_of(SecuredValue const & sealed, vxcrypto::Key const & key) {
    try {
        return sealed.authenticate(key, SecuredValue::strict_cipher_provider())
                   ? ""
                   : "wrong key, or it was tampered with";
    } catch (std::bad_alloc const &) {
        throw; // says nothing about the value
    } catch (std::exception const & e) {
        return message_of(e);
    }
}

int verify(Options const & options) {
    vxcrypto::Key const key = load_key(options.key);
    AttributeValue const value = read_value(options.in, options.read);
    Place const place(options.in, value, options.name);
    Output output("-");
    bool areGood = true;
    unsigned long long count = 0;
    auto const check = [&](std::string const & path, SecuredValue const & sealed) {
        std::string const fault = fault_of(sealed, key);
        areGood = areGood && fault.empty();
        output.write((path.empty() ? "the value" : shown_path(path)) + ": " +
                     (fault.empty() ? "good" : "BAD: " + fault) + '\n');
        return sealed;
    };
    replace_sealed(place.get(), options.name, check, count);
    output.commit();
    if (count == 0) {
        throw Failure(place.text(), "there is no sealed value");
    }
    return areGood ? eExit_Good : eExit_Data;
}

} // namespace

void add_verify(CLI::App & app, Run & run) {
    auto const options = std::make_shared<Options>();
    CLI::App & command = *app.add_subcommand(
        "verify", "Check that sealed values belong to a key and are as they were sealed");
    command.add_option("FILE", options->in, "Input file, - for standard input")->required();
    command.add_option("--name", options->name, "Only the value at this path and all inside it");
    add_key_options(command, options->key);
    add_read_options(command, options->read);
    command.footer("A line for each sealed value, at any depth; nothing is opened.\n"
                   "Exit code 1 when one of them is bad.\n"
                   "Example:\n"
                   "  vxattr verify server.json --key-file disk.key");
    command.callback([options, &run] { run = [options] { return verify(*options); }; });
}

} // namespace vxattr
