#include "vxattr/commands/commands.h"
#include "vxattr/failure.h"
#include "vxattr/files/value_file.h"
#include "vxattr/keys/key_options.h"
#include "vxattr/place.h"
#include "vxattribute/attribute_value_marshaler.h"
#include "vxcrypto/random_provider.h"
#include "vxserialize/memory_writer.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>

namespace vxattr {

using namespace vxattribute;
using vxcrypto::Key;

namespace {

struct Options {
    std::string in;
    std::string out;
    std::string name;
    std::string newDataKey;
    bool isKey = false;
    KeyOptions key;
    SealingOptions sealing;
    ReadOptions read;
    WriteOptions write;
};

template <typename Secret>
SecuredValue sealed(Secret const & secret, Options const & options, Key const & key,
                    SecuredValue::ICipher const & cipher) {
    return SecuredValue(secret, options.sealing.annotation.value_or(""), key_id_of(options.sealing),
                        key, cipher);
}

/// Makes a random key for `cipher` and writes it, sealed under `master`, to an output that the
/// caller commits.
Key make_data_key(Options const & options, Key const & master, SecuredValue::ICipher const & cipher,
                  Output & output) {
    Key key(cipher.keysize());
    vxcrypto::default_random_provider()->generate_random(key.mutable_data(), key.size());
    vxserialize::MemoryWriter writer;
    SecuredValue const wrapped = sealed(key, options, master, find_cipher("", master, options.key));
    write_attribute_value(writer, AttributeValue(wrapped));
    output.write(*writer.close_and_detach_memory_list());
    return key;
}

AttributeValue seal_with(Options const & options, Key const & key,
                         SecuredValue::ICipher const & cipher) {
    if (options.isKey) {
        return sealed(read_key_file(options.in, options.key.keyFormat), options, key, cipher);
    }
    AttributeValue const value = read_value(options.in, options.read);
    Place const place(options.in, value, options.name);
    return place.replaced(sealed(place.get(), options, key, cipher));
}

/// Writes the value and commits both outputs. The key's file gets its name before others can see
/// the sealed value, which is useless without the key. Where the output allows it, everything that
/// can fail is done before that. The key's file is never removed once it has its name: another
/// process may have used the key.
void write_with_key(Options const & options, AttributeValue const & value, Output & output,
                    Output & key) {
    bool const isDirect = output.is_direct();
    bool isKeyThere = false;
    auto const commit_key = [&] {
        key.commit();
        isKeyThere = true;
    };
    try {
        if (isDirect) {
            commit_key();
        }
        write_value(output, options.out, value, options.write, options.read.packages);
        output.finish();
        if (!isDirect) {
            commit_key();
        }
        output.commit();
    } catch (std::exception const & e) {
        if (!isKeyThere) {
            throw;
        }
        throw Failure(options.newDataKey,
                      "the new key stays, though the output failed: " + message_of(e));
    }
}

int seal(Options const & options) {
    if (options.isKey && (!options.name.empty() || !options.newDataKey.empty())) {
        throw UsageFailure("--as-key goes with neither --name nor --new-data-key");
    }
    if (options.newDataKey == "-") {
        throw UsageFailure("--new-data-key takes a file");
    }
    check_output_form(options.out, options.write);
    check_output_spares_keys(options.out,
                             {options.key.keyFile, options.key.dataKey, options.newDataKey});
    Key key = load_key(options.key);
    SecuredValue::ICipher const & cipher = find_cipher(options.sealing.cipher, key, options.key);
    std::optional<Output> keyOutput;
    if (!options.newDataKey.empty()) {
        keyOutput.emplace(options.newDataKey, Output::EAccess::eNewOwnerOnly);
        key = with_place(options.key.keyFile,
                         [&] { return make_data_key(options, key, cipher, *keyOutput); });
    }
    AttributeValue const value =
        with_place(options.in, [&] { return seal_with(options, key, cipher); });
    Output output(options.out);
    if (keyOutput) {
        write_with_key(options, value, output, *keyOutput);
    } else {
        write_value(output, options.out, value, options.write, options.read.packages);
        output.commit();
    }
    return eExit_Good;
}

} // namespace

void add_seal(CLI::App & app, Run & run) {
    auto const options = std::make_shared<Options>();
    CLI::App & command = *app.add_subcommand("seal", "Seal a value, one attribute of it, or a key");
    command.add_option("IN", options->in, "Input file, - for standard input")->required();
    command.add_option("OUT", options->out, "Output file, - for standard output")->required();
    command.add_option("--name", options->name, "Seal the attribute at this path, in its place");
    command.add_flag("--as-key", options->isKey, "IN is a file of a key, raw or hexadecimal");
    command.add_option("--new-data-key", options->newDataKey,
                       "Seal with a new random key, and write that to this file, sealed under "
                       "--key-file");
    add_key_options(command, options->key);
    add_sealing_options(command, options->sealing);
    add_read_options(command, options->read);
    add_write_options(command, options->write);
    command.footer("Examples:\n"
                   "  vxattr seal server.json server.json --name db/password --key-file disk.key\n"
                   "  vxattr seal big.bin sealed.bin --key-file master.key --new-data-key big.key\n"
                   "  vxattr seal data.key wrapped.bin --as-key --key-file master.key");
    command.callback([options, &run] { run = [options] { return seal(*options); }; });
}

} // namespace vxattr
