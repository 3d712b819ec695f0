#include "json_documents.h"

#include <cstdio>
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

std::string records() {
    std::string text = "[";
    for (int i = 0; text.size() < 2'000'000; ++i) {
        text += i == 0 ? "" : ",";
        text += format(R"({"id":%d,"name":"Customer number %d","mail":"customer%d@example.org",)"
                       R"("active":%s,"balance":%d,"visits":%d,"tags":["new","retail","north"],)"
                       R"("scores":[%d,90,1200],"address":{"city":"Somewhere","zip":"%05d"}})",
                       100'000 + i, i, i, i % 7 != 0 ? "true" : "false", i * 37, i % 50, i, i);
    }
    return text + "]";
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

std::string iso_codes() {
    std::ifstream file("/usr/share/iso-codes/json/iso_639-3.json", std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

} // namespace

std::vector<JsonDocument> const & json_documents() {
    static std::vector<JsonDocument> const all = [] {
        std::vector<JsonDocument> made{{"configuration", configuration(), true},
                                       {"records", records(), true},
                                       {"strings", strings(), true},
                                       {"integers", numbers(false), true},
                                       {"doubles", numbers(true), false}};
        if (std::string text = iso_codes(); !text.empty()) {
            made.push_back({"iso_codes", std::move(text), true});
        }
        return made;
    }();
    return all;
}

} // namespace vxbench
