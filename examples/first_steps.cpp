// First steps with attributes: makes a map, reads typed settings, sends the map through a stream
// and back, and prints it.

#include "vxattribute/vxattribute.h"
#include "vxserialize/vxserialize.h"

#include <iostream>

using namespace vxattribute;

int main() {
    AttributeMap const server = make_map({{"host", "localhost"},
                                          {"port", 8080},
                                          {"paths", make_list<std::string>({"/", "/status"})}});

    static AttributeName const port("port"); // made once; a look-up then compares pointers only
    std::cout << "port " << get<long long>(server, port) << '\n';
    std::cout << "retries " << get_or<long long>(server, "retries", 3) << '\n';

    vxserialize::MemoryWriter writer;
    server.write(writer);
    vxserialize::MemoryReader reader = writer.reader();
    AttributeMap const copy(reader);
    std::cout << "copy is " << (copy == server ? "equal" : "different") << '\n';

    for (auto const & element : sorted_by_name(copy)) { // map order is by address
        std::cout << element->first << ": " << to_text(element->second) << '\n';
    }
}
