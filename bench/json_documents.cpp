#include "json_documents.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>

namespace vxbench {

namespace {

/// Formats the numbers by `format`, as printf does.
template <typename... Args>
std::string format(char const * format, Args... args) {
    char buffer[1024];
    int const size = std::snprintf(buffer, sizeof(buffer), format, args...);
    return std::string(buffer, static_cast<std::size_t>(size));
}

std::string configuration() {
    std::string text = "{\n    \"version\": 3,\n    \"nodes\": {";
    for (int i = 0; text.size() < 20'000; ++i) {
        text += i == 0 ? "\n" : ",\n";
        text += format(R"(        "node-%d": {
            "host": "node-%d.example.org",
            "port": %d,
            "enabled": %s,
            "timeout_ms": %d,
            "protocol": "https",
            "paths": ["/", "/status", "/metrics"],
            "limits": { "connections": 1024, "bytes": 8589934592, "rate": 12 },
            "log": { "level": "info", "file": "/var/log/server.log", "rotate": null }
        })",
                       i, i, 8000 + i, i % 3 != 0 ? "true" : "false", 1500 * i);
    }
    return text + "\n    }\n}\n";
}

std::string record(unsigned int i) {
    return format(R"({"id":%d,"name":"Customer number %d","mail":"customer%d@example.org",)"
                  R"("active":%s,"balance":%d,"visits":%d,"tags":["new","retail","north"],)"
                  R"("scores":[%d,90,1200],"address":{"city":"Somewhere","zip":"%05d"}})",
                  100'000 + i, i, i, i % 7 != 0 ? "true" : "false", i * 37, i % 50, i, i);
}

std::string preferences() {
    std::string text = "{";
    for (int i = 0; i < 300; ++i) {
        text += i == 0 ? "\n" : ",\n";
        text += format(i % 3 == 0   ? R"(    "preference.number-%d": "value %d")"
                       : i % 3 == 1 ? R"(    "preference.limit-%d": %d)"
                                    : R"(    "preference.switch-%d": [1, %d])",
                       i, i * 11);
    }
    return text + "\n}\n";
}

/// Returns an array of texts of 1 to 8 KB. One in ten ends with an escape.
std::string strings() {
    std::mt19937 random(5);
    std::string text = "[";
    for (int i = 0; text.size() < 1'000'000; ++i) {
        text += i == 0 ? "\"" : ",\"";
        for (auto size = 1000 + random() % 7000; size != 0; --size) {
            text += static_cast<char>('a' + random() % 26);
        }
        text += i % 10 == 0 ? R"(\n")" : "\"";
    }
    return text + "]";
}

std::string numbers(bool fractions) {
    std::mt19937 random(6);
    std::string text = "[";
    for (int i = 0; i < 50'000; ++i) {
        text += i == 0 ? "" : ",";
        auto const number = static_cast<int>(random() % 1'000'000);
        text += fractions ? format("%d.%05d", number % 1000, number) : format("%d", number);
    }
    return text + "]";
}

std::string content(std::string const & path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

/// Adds the documents that are files, as far as they are there.
void add_files(std::vector<JsonDocument> & documents) {
    char const * const folder = std::getenv("VX_BENCH_DOCUMENTS");
    std::string const prefix = folder == nullptr ? "" : std::string(folder) + '/';
    auto const add = [&documents](std::string name, std::string const & path) {
        if (std::string text = content(path); !text.empty()) {
            documents.push_back({std::move(name), std::move(text)});
        }
    };
    add("iso_codes", "/usr/share/iso-codes/json/iso_639-3.json");
    for (char const * name : {"twitter", "citm_catalog", "gsoc_2018", "github_events", "mdn_data",
                              "mime_db", "numbers"}) {
        add(name, prefix + name + ".json");
    }
}

} // namespace

std::string json_records(unsigned int count) {
    std::string text = "[";
    for (unsigned int i = 0; i < count; ++i) {
        text += i == 0 ? "" : ",";
        text += record(i);
    }
    return text + "]";
}

std::vector<JsonDocument> const & json_documents() {
    static std::vector<JsonDocument> const all = [] {
        std::vector<JsonDocument> made{
            {"configuration", configuration()},
            {"preferences", preferences()},
            {"records", json_records(9'000)},
            {"strings", strings()},
            {"integers", numbers(false)},
            {"doubles", numbers(true)},
            {"bytes_7", R"({"a":1})"},
            {"bytes_55", R"({"id":17,"name":"some names","ready":true,"list":[1,2]})"},
            {"bytes_500",
             R"({"source":"https://example.org/customers?page=17","next":null,"items":)" +
                 json_records(2) + "}"},
        };
        add_files(made);
        for (std::size_t i = 0; i < made.size(); ++i) {
            if (made[i].name == "preferences" || made[i].name == "mime_db") {
                made.push_back({made[i].name + "_known", made[i].text, true});
            }
        }
        return made;
    }();
    return all;
}

} // namespace vxbench
