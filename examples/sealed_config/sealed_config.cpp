// A configuration with one sealed setting, written by one run of the program and read by another:
//
//     sealed_config write FILE KEYFILE     makes a key and a configuration
//     sealed_config read FILE KEYFILE      reads the host, the port and the sealed password
//
// Anybody can show, compare and copy the file; opening the password needs the key.

#include "file_io.h"

#include "vxattribute/vxattribute.h"
#include "vxserialize/vxserialize.h"

#include <cstring>
#include <iostream>

namespace sealed_config {

using namespace vxattribute;

void write_config(char const * file, char const * keyFile) {
    vxcrypto::Key const key = vxcrypto::Key::random();
    AttributeMap const config = make_map({
        {"host", "db.example.org"},
        {"port", 5432},
        {"password", seal("correct horse", key, {.annotation = "db.example.org password"})},
    });
    vxserialize::MemoryWriter writer;
    config.write(writer);
    write_key_file(keyFile, key);
    write_file(file, *writer.close_and_detach_memory_list());
    std::cout << "wrote " << config.size() << " settings, one of them sealed\n";
}

void read_config(char const * file, char const * keyFile) {
    vxserialize::MemoryReader reader(read_file(file));
    AttributeMap const config(reader);
    vxcrypto::Key const key = read_key_file(keyFile);

    SecuredValue const & sealed = get<SecuredValue>(config, "password");
    std::string const password = open(sealed, key).get<std::string>();
    std::cout << "host " << get<std::string>(config, "host") << ", port "
              << get<long long>(config, "port") << ", a password of " << password.size()
              << " bytes\n"
              << "sealed: " << sealed.annotation() << '\n';
}

} // namespace sealed_config

int main(int argc, char ** argv) {
    try {
        if (argc == 4 && std::strcmp(argv[1], "write") == 0) {
            sealed_config::write_config(argv[2], argv[3]);
        } else if (argc == 4 && std::strcmp(argv[1], "read") == 0) {
            sealed_config::read_config(argv[2], argv[3]);
        } else {
            std::cerr << "usage: sealed_config write|read FILE KEYFILE\n";
            return 2;
        }
        return 0;
    } catch (std::exception const & e) {
        std::cerr << "sealed_config: " << e.what() << '\n';
    }
    return 1;
}
