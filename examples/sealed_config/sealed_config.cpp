// A configuration with one sealed setting, written by one run of the program and read by another:
//
//     sealed_config write FILE KEYFILE     makes a key and a configuration
//     sealed_config read FILE KEYFILE      reads the host, the port and the sealed password
//
// Anybody can show, compare and copy the file; opening the password needs the key.

#include "file_io.h"

#include "vxattribute/vxattribute.h"
#include "vxcore/error_exception.h"
#include "vxcrypto/random_provider.h"
#include "vxserialize/vxserialize.h"

#include <cstring>
#include <iostream>

namespace sealed_config {

using namespace vxattribute;

void write_config(char const * file, char const * keyFile) {
    vxcrypto::Key key(16);
    vxcrypto::default_random_provider()->generate_random(key.mutable_data(), key.size());
    AttributeMap const config = make_map({
        {"host", "db.example.org"},
        {"port", 5432},
        {"password", SecuredValue(AttributeValue("correct horse"), "db.example.org password",
                                  SecuredValue::KeyId("config", vxcore::Uuid()), key,
                                  SecuredValue::default_cipher())},
    });
    vxserialize::MemoryWriter writer;
    config.write(writer);
    write_file(file, *writer.close_and_detach_memory_list());
    write_key_file(keyFile, key);
    std::cout << "wrote " << config.size() << " settings, one of them sealed\n";
}

/// A matcher: accepts a sealed String that opens with the key, and keeps its text.
class Opener {
  public:
    Opener(vxcrypto::Key const & key, std::string & target) : m_key(key), m_target(target) {}

    bool operator()(Query::MatchContext const & found) const {
        SecuredValue const & sealed = found.attribute_value().get<SecuredValue>();
        // Strict: refuses a value that names no real cipher, instead of returning its plain bytes.
        m_target = sealed.extract(m_key, SecuredValue::strict_cipher_provider(), nullptr)
                       .get<std::string>();
        return true;
    }

  private:
    vxcrypto::Key const & m_key;
    std::string & m_target;
};

void read_config(char const * file, char const * keyFile) {
    vxserialize::MemoryReader reader(read_file(file));
    AttributeMap const config(reader);
    vxcrypto::Key const key = read_key_file(keyFile);

    std::string host;
    unsigned short port = 0;
    std::string password;
    auto const into = [](auto & target) {
        return [&target](Query::MatchContext const & found) {
            found.value().assign_to(target);
            return true;
        };
    };
    auto const required = [](char const * name) { return Query(name, 1, 1); };
    required("host").execute(config, into(host), nullptr);
    required("port").execute(config, into(port), nullptr);
    required("password").execute(config, Opener(key, password), nullptr);

    std::cout << "host " << host << ", port " << port << ", a password of " << password.size()
              << " bytes\n"
              << config.query("password").type() << ": "
              << config.query("password").get<SecuredValue>().annotation() << '\n';
}

/// Prints one line: the setting at fault, if there is one, and the innermost failure. The whole
/// chain also shows the configuration: it is for logs only.
void report(vxcore::ErrorInfo::Ptr const & error) {
    vxcore::ErrorInfo const * cause = error.get();
    while (cause->nested()) {
        cause = cause->nested().get();
    }
    std::string const & setting = Query::bad_attribute_name(error);
    std::cerr << "sealed_config: " << setting << (setting.empty() ? "" : ": ") << cause->text()
              << '\n';
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
    } catch (vxcore::ErrorException const & e) {
        sealed_config::report(e.info());
    } catch (std::exception const & e) {
        std::cerr << "sealed_config: " << e.what() << '\n';
    }
    return 1;
}
