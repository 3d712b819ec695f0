#include "vxattr/commands/commands.h"
#include "vxattr/failure.h"
#include "vxattr/files/value_file.h"
#include "vxattr/keys/key_options.h"
#include "vxattr/keys/sealed_values.h"
#include "vxattr/place.h"
#include "vxattribute/error_codes.h"
#include "vxcore/error_exception.h"

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
    KeyOptions oldKey;
    KeyOptions newKey;
    SealingOptions sealing;
    ReadOptions read;
    WriteOptions write;
};

/// The sealed key, or nothing when the sealed value is not a key. Unlike an ordinary value, a key
/// is in memory that is wiped.
std::optional<Key> opened_key(SecuredValue const & sealed, Key const & key) {
    try {
        return sealed.extract_binary_as_key(key, SecuredValue::strict_cipher_provider(), nullptr);
    } catch (vxcore::ErrorException const & e) {
        if (e.info()->matches(error::vxattribute_value_type_mismatch) ||
            e.info()->matches(error::vxattribute_value_cardinality_expectSingle)) {
            return std::nullopt;
        }
        throw;
    }
}

SecuredValue rekeyed(SecuredValue const & sealed, Options const & options, Key const & oldKey,
                     Key const & newKey, SecuredValue::ICipher const & cipher) {
    std::string const annotation = options.sealing.annotation.value_or(sealed.annotation());
    SecuredValue::KeyId const id = key_id_of(options.sealing, sealed.key_id());
    if (std::optional<Key> const key = opened_key(sealed, oldKey)) {
        return SecuredValue(*key, annotation, id, newKey, cipher);
    }
    AttributeValue const value =
        sealed.extract(oldKey, SecuredValue::strict_cipher_provider(), nullptr);
    return SecuredValue(value, annotation, id, newKey, cipher);
}

int rekey(Options const & options) {
    check_output_form(options.out, options.write);
    check_output_spares_keys(options.out, {options.oldKey.keyFile, options.oldKey.dataKey,
                                           options.newKey.keyFile, options.newKey.dataKey});
    Key const oldKey = load_key(options.oldKey);
    Key const newKey = load_key(options.newKey);
    SecuredValue::ICipher const & cipher =
        find_cipher(options.sealing.cipher, newKey, options.newKey);
    AttributeValue const value = read_value(options.in, options.read);
    Place const place(options.in, value, options.name);
    unsigned long long count = 0;
    auto const replace = [&](std::string const & path, SecuredValue const & sealed) {
        return with_place(path.empty() ? options.in : options.in + ": " + shown_path(path),
                          [&] { return rekeyed(sealed, options, oldKey, newKey, cipher); });
    };
    AttributeValue const replaced = replace_sealed(place.get(), options.name, replace, count);
    if (count == 0) {
        throw Failure(place.text(), "there is no sealed value");
    }
    Output output(options.out);
    write_value(output, options.out, place.replaced(replaced), options.write,
                options.read.packages);
    output.commit();
    return eExit_Good;
}

} // namespace

void add_rekey(CLI::App & app, Run & run) {
    auto const options = std::make_shared<Options>();
    CLI::App & command = *app.add_subcommand("rekey", "Seal sealed values under another key");
    command.add_option("IN", options->in, "Input file, - for standard input")->required();
    command.add_option("OUT", options->out, "Output file, - for standard output")->required();
    command.add_option("--name", options->name, "Only the value at this path and all inside it");
    command.add_option("--new-key-file", options->newKey.keyFile, "File of the new key")
        ->required();
    command.add_option("--new-data-key", options->newKey.dataKey,
                       "File of a sealed key: --new-key-file opens it, and it is used instead");
    add_key_options(command, options->oldKey);
    add_sealing_options(command, options->sealing);
    add_read_options(command, options->read);
    add_write_options(command, options->write);
    command.footer(
        "All sealed values at every depth, or nothing: one that the old key does not "
        "open is a failure.\nAnnotation, category and key id stay unless they are given.\n"
        "Example:\n"
        "  vxattr rekey server.json server.json --key-file old.key --new-key-file "
        "new.key");
    command.callback([options, &run] {
        options->newKey.keyFormat = options->oldKey.keyFormat;
        run = [options] { return rekey(*options); };
    });
}

} // namespace vxattr
