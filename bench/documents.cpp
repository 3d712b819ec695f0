#include "documents.h"

#include "package_map.h"

#include "vxattribute/binary_value.h"
#include "vxattribute/collect_names.h"
#include "vxattribute/make_value.h"

#include <algorithm>
#include <filesystem>
#include <random>

namespace vxbench {

namespace {

using namespace vxattribute;

unsigned int count_attributes(AttributeMapBase const & map) {
    unsigned int count = map.size();
    for (auto const & [name, value] : map) {
        if (value.type() == ValueTypeId::typeAttributeMap) {
            for (AttributeMap const & inner : elements<AttributeMap>(value)) {
                count += count_attributes(inner);
            }
        }
    }
    return count;
}

AttributeMap section(unsigned int number) {
    return make_map({
        {"host", "node-" + std::to_string(number) + ".example.org"},
        {"port", 8000 + number},
        {"enabled", number % 3 != 0},
        {"weight", 0.25 + number},
        {"timeout_ms", 1500 * number},
        {"retries", number % 5},
        {"protocol", "https"},
        {"paths", make_list<std::string>({"/", "/status", "/metrics"})},
        {"limits", make_map({{"connections", 1024}, {"bytes", 1LL << 33}, {"rate", 12.5}})},
        {"log", make_map({{"level", "info"}, {"file", "/var/log/server.log"}, {"rotate", true}})},
    });
}

AttributeMap record(unsigned int number) {
    std::string const digits = std::to_string(number);
    return make_map({
        {"id", 100'000 + number},
        {"name", "Customer number " + digits},
        {"mail", "customer" + digits + "@example.org"},
        {"active", number % 7 != 0},
        {"balance", 0.37 + number},
        {"visits", number % 50},
        {"tags", make_list<std::string>({"new", "retail", "north"})},
        {"scores", make_list<long long>({number, 90, 1200})},
    });
}

AttributeValue mixed_value(unsigned int number) {
    unsigned char bytes[20] = {};
    std::fill(std::begin(bytes), std::end(bytes), static_cast<unsigned char>(number));
    switch (number % 10) {
    case 0:
        return number % 20 == 0;
    case 1:
        return number;
    case 2:
        return 1'000'003LL * number;
    case 3:
        return 0.1 * number;
    case 4:
        return "text number " + std::to_string(number);
    case 5:
        return BinaryValue(bytes, sizeof bytes);
    case 6: {
        vxcore::Uuid uuid;
        vxcore::Uuid::parse("6ba7b810-9dad-11d1-80b4-00c04fd430c8", uuid);
        return uuid;
    }
    case 7:
        return vxuri::UriReference::parse("https://example.org/item?id=" + std::to_string(number));
    case 8:
        return vxcore::AbsoluteTime(16'000'000'000'000'000 + 777LL * number);
    default:
        return vxcore::RelativeTime(600'000'000LL * number);
    }
}

/// Returns the package of all names. With `innerOnly`, only of the names in inner maps: the others
/// are data.
AttributeNamePackageSet::Ptr package_of(AttributeMap const & map, bool innerOnly) {
    AttributeNamePackage::Composer composer;
    if (!innerOnly) {
        collect_names(map, composer);
    }
    for (auto const & [name, value] : map) {
        collect_names(value, composer);
    }
    return AttributeNamePackageSet::create(composer.compose());
}

void add_document(std::vector<Document> & documents, char const * name, AttributeMap const & map,
                  bool innerOnly = false) {
    documents.push_back(
        {name, map, to_plain(map), package_of(map, innerOnly), count_attributes(map)});
}

std::vector<Document> make_documents() {
    std::vector<Document> documents;
    add_document(documents, "settings", settings_document());
    add_document(documents, "records", record_document());
    add_document(documents, "mixed", mixed_document());
    if (char const * const database = "/var/lib/dpkg/status"; std::filesystem::exists(database)) {
        inventory::ControlFile file(database);
        add_document(documents, "inventory", inventory::read_inventory(file), true);
    }
    return documents;
}

} // namespace

AttributeMap settings_document() {
    MutableAttributeMap settings;
    for (unsigned int i = 0; i < 12; ++i) {
        settings.add("section_" + std::to_string(i), section(i));
    }
    return settings;
}

AttributeMap record_document() {
    std::vector<AttributeMap> records;
    for (unsigned int i = 0; i < 500; ++i) {
        records.push_back(record(i));
    }
    return make_map({{"records", make_list(std::span<AttributeMap const>(records))}});
}

AttributeMap mixed_document() {
    MutableAttributeMap map;
    std::vector<std::string> const names = attribute_names(200);
    for (unsigned int i = 0; i < names.size(); ++i) {
        map.add(names[i], mixed_value(i));
    }
    return map;
}

std::vector<Document> const & documents() {
    static std::vector<Document> const all = make_documents();
    return all;
}

std::vector<std::string> attribute_names(unsigned int count) {
    std::vector<std::string> names;
    for (unsigned int i = 0; i < count; ++i) {
        names.push_back("setting_" + std::to_string(i));
    }
    std::shuffle(names.begin(), names.end(), std::mt19937(1));
    return names;
}

} // namespace vxbench
