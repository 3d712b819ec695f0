// First steps with attributes: makes a map, reads typed settings, turns the map into bytes and
// back, and prints it.

#include "vxattribute/vxattribute.h"

#include <iostream>
#include <string>

using namespace vxattribute;

int main() {
    AttributeMap const server = make_map({{"host", "localhost"},
                                          {"port", 8080},
                                          {"paths", make_list<std::string>({"/", "/status"})}});

    static AttributeName const port("port"); // made once; a look-up then compares pointers only
    std::cout << "port " << get<long long>(server, port) << '\n';
    std::cout << "retries " << get_or<long long>(server, "retries", 3) << '\n';

    std::string const bytes = to_bytes(server);
    AttributeMap const copy = map_from_bytes(bytes);
    std::cout << "copy is " << (copy == server ? "equal" : "different") << '\n';

    for (auto const & element : sorted_by_name(copy)) { // map order is by address
        std::cout << element->first << ": " << to_text(element->second) << '\n';
    }
}
