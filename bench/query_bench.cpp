// Finds settings among 10, 100 or 1000, checks each and reads it into a variable: with ready names,
// and with names made from text at each query.

#include "documents.h"
#include "measure.h"

#include "vxattribute/query.h"
#include "vxattribute/to_text.h"

#ifdef VX_BENCH_NLOHMANN
#include <nlohmann/json.hpp>
#endif

namespace vxbench {

namespace {

using namespace vxattribute;

std::string work_of(char const * work, unsigned int size) {
    return work + std::to_string(size);
}

AttributeMap settings_of(std::vector<std::string> const & names) {
    MutableAttributeMap map;
    for (unsigned int i = 0; i < names.size(); ++i) {
        map.add(names[i], 1000 + i);
    }
    return map;
}

int ask(Query const & query, AttributeMap const & settings) {
    int number = 0;
    query.execute(
        settings,
        [&number](Query::MatchContext const & found) {
            found.value().assign_to(number);
            return true;
        },
        nullptr);
    return number;
}

void add_ours(unsigned int size) {
    add(work_of("query_ready_", size), "vxattribute", [size](benchmark::State & state) {
        std::vector<std::string> const names = attribute_names(size);
        AttributeMap const settings = settings_of(names);
        std::vector<Query> queries;
        for (std::string const & name : names) {
            queries.emplace_back(name, 1, 1);
        }
        measure(state, size, [&] {
            for (Query const & query : queries) {
                benchmark::DoNotOptimize(ask(query, settings));
            }
        });
    });
    add(work_of("query_text_", size), "vxattribute", [size](benchmark::State & state) {
        std::vector<std::string> const names = attribute_names(size);
        AttributeMap const settings = settings_of(names);
        measure(state, size, [&] {
            for (std::string const & name : names) {
                benchmark::DoNotOptimize(ask(Query(name, 1, 1), settings));
            }
        });
    });
    add(work_of("query_failing_", size), "vxattribute", [size](benchmark::State & state) {
        AttributeMap const settings = settings_of(attribute_names(size));
        Query const query("none of them", 1, 1);
        measure(state, 1, [&] {
            Query::ErrorPtr error;
            query.execute(settings, &error);
            benchmark::DoNotOptimize(error);
        });
    });
    add(work_of("query_failing_", size), "to_text", [size](benchmark::State & state) {
        AttributeMap const settings = settings_of(attribute_names(size));
        measure(state, 1, [&] {
            std::string text = to_text(settings);
            benchmark::DoNotOptimize(text);
        });
    });
}

#ifdef VX_BENCH_NLOHMANN

/// @param ask  Returns the number stored under that name.
template <typename Ask>
void add_nlohmann(std::string const & work, char const * peer, unsigned int size, bool isReady,
                  Ask ask) {
    add(work, peer, [=](benchmark::State & state) {
        std::vector<std::string> const names = attribute_names(size);
        nlohmann::json settings;
        for (unsigned int i = 0; i < names.size(); ++i) {
            settings[names[i]] = 1000 + i;
        }
        measure(state, size, [&] {
            for (std::string const & name : names) {
                benchmark::DoNotOptimize(isReady ? ask(settings, name)
                                                 : ask(settings, std::string(name.c_str())));
            }
        });
    });
}

void add_peers(unsigned int size) {
    for (bool const isReady : {true, false}) {
        std::string const work = work_of(isReady ? "query_ready_" : "query_text_", size);
        add_nlohmann(work, "nlohmann_value", size, isReady,
                     [](nlohmann::json const & settings, std::string const & name) {
                         return settings.value(name, 0);
                     });
        add_nlohmann(work, "nlohmann_get", size, isReady,
                     [](nlohmann::json const & settings, std::string const & name) {
                         return settings.contains(name) ? settings[name].get<int>() : 0;
                     });
    }
}

#endif

} // namespace

void add_query_benchmarks() {
    for (unsigned int size : {10u, 100u, 1000u}) {
        add_ours(size);
#ifdef VX_BENCH_NLOHMANN
        add_peers(size);
#endif
    }
    add_ours(10'000);
}

} // namespace vxbench
