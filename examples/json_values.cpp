// Writes values as JSON text and reads them back, and reads parts of a document as values. See
// docs/guide/json.md.

#include "vxattribute/vxattribute.h"

#include <iostream>
#include <vector>

using namespace vxattribute;

int main() {
    AttributeMap const server = make_map({{"host", "localhost"}, {"port", 8080}, {"weight", 0.5}});
    JsonTextOptions options;
    options.indent = 2;
    options.sorted_names = true;
    std::string const text = value_to_json(server, options);
    AttributeValue const back = value_from_json(text);
    std::cout << text << '\n' << (back == server ? "equal" : "different") << '\n';

    std::string const others = R"({"a":{"port":80},"b":[443,8443],"c":9007199254740993})";
    vxjson::Document document(others.data(), others.size());
    vxjson::Reader & reader = document.reader();
    std::vector<std::string> names;
    std::vector<AttributeValue> values;
    auto const servers = reader.next_value();
    while (auto const child = reader.next_child(servers)) {
        names.push_back(child->name());
        values.push_back(read_attribute_value(reader));
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        std::cout << names[i] << ' ' << value_to_json(values[i]) << '\n';
    }

    try {
        value_from_json("{\"port\": [80,\n\"http\"]}");
    } catch (std::exception const & e) {
        std::cout << e.what() << '\n';
    }
}
