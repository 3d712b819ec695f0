#include "coded_names.h"

#include "control_file.h"

#include "vxattribute/attribute_name_decoder.h"
#include "vxattribute/bytes.h"
#include "vxattribute/collect_names.h"
#include "vxattribute/to_text.h"
#include "vxcore/text_conversion.h"
#include "vxserialize/memory_reader.h"

namespace inventory {

namespace {

using namespace vxattribute;

AttributeNamePackage::Ptr package_of(AttributeMap const & packages) {
    AttributeNamePackage::Composer composer;
    for (auto const & [name, attributes] : packages) {
        collect_names(attributes, composer);
    }
    return composer.compose();
}

/// Unlike `map_from_bytes`, makes up the names of packages that are not known.
AttributeMap read_without_package(std::string const & bytes) {
    vxserialize::MemoryReader reader(bytes);
    AttributeNameDecoder decoder(nullptr, false);
    return AttributeMap(reader, decoder);
}

/// Returns the inventory as a reader without the name package sees it: each name consists of the id
/// of the name package and the position in it.
AttributeMap without_names(AttributeMap const & packages, AttributeNamePackage const & names) {
    MutableAttributeMap result;
    for (auto const & [package, attributes] : packages) {
        MutableAttributeMap renamed;
        for (auto const & [name, value] : attributes.get<AttributeMap>()) {
            auto const position = static_cast<unsigned int>(names.find(name) - names.begin());
            renamed.add(names.id().as_string(1) + ":" + vxcore::to_string(position), value);
        }
        result.add(package, renamed);
    }
    return result;
}

} // namespace

void show_coded(AttributeMap const & packages, std::size_t plainSize, unsigned int attributes,
                StepTimer & timer) {
    AttributeNamePackage::Ptr const names = package_of(packages);
    auto const known = AttributeNamePackageSet::create(names);
    timer.print("find names", plainSize, attributes);

    std::string const bytes = to_bytes(packages, known);
    timer.print("write coded", bytes.size(), attributes);

    AttributeMap const read = map_from_bytes(bytes, known);
    timer.print("read coded", bytes.size(), attributes);

    AttributeMap const lacking = read_without_package(bytes);
    timer.print("read lacking", bytes.size(), attributes);

    if (read != packages || lacking != without_names(packages, *names)) {
        fail("coded names", "what was read back differs");
    }
    int const saved = static_cast<int>(plainSize) - static_cast<int>(bytes.size());
    std::cout << to_text(*names) << "\ncoded " << bytes.size() << " bytes, " << saved
              << " saved; a reader with the package reads it back equal,\n"
                 "one without it reads names such as "
              << names->id().as_string(1) << ":0\n\n";
}

} // namespace inventory
