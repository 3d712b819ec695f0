// Builds, copies, writes to, searches and compares maps: of large integers, which are our most
// expensive case, and of mixed scalars.

#include "documents.h"
#include "measure.h"

#include "vxattribute/make_value.h"

#include <algorithm>
#include <random>
#include <span>
#include <utility>
#include <vector>

#ifdef VX_BENCH_NLOHMANN
#include <nlohmann/json.hpp>
#endif
#ifdef VX_BENCH_BOOST_JSON
#include <boost/json.hpp>
#endif

namespace vxbench {

namespace {

// A peer defines its types and four operations; the work is the same for all.

struct Vxattribute {
    using Map = vxattribute::MutableAttributeMap;
    using Name = vxattribute::AttributeName;

    template <typename T>
    static void add(Map & map, Name const & name, T const & value) {
        map.add(name, value);
    }

    static void write(Map & map, Name const & name, long long number) { map[name] = number; }

    static auto find(Map const & map, Name const & name) { return map.query_ptr(name); }

    using List = std::vector<vxattribute::Attribute>;

    static auto make_map(List const & list) { return vxattribute::make_map(std::span(list)); }
};

struct StdMap {
    using Map = PlainMap;
    using Name = std::string;

    template <typename T>
    static void add(Map & map, Name const & name, T const & value) {
        map.emplace(name, PlainValue{value});
    }

    static void write(Map & map, Name const & name, long long number) { map[name].data = number; }

    static auto find(Map const & map, Name const & name) { return &map.find(name)->second; }

    using List = std::vector<std::pair<std::string, PlainValue>>;

    static auto make_map(List const & list) { return Map(list.begin(), list.end()); }
};

#ifdef VX_BENCH_NLOHMANN
struct Nlohmann {
    using Map = nlohmann::json;
    using Name = std::string;

    template <typename T>
    static void add(Map & map, Name const & name, T const & value) {
        map.emplace(name, value);
    }

    static void write(Map & map, Name const & name, long long number) { map[name] = number; }

    static auto find(Map const & map, Name const & name) { return &*map.find(name); }

    using List = std::vector<std::pair<std::string, nlohmann::json>>;

    static Map make_map(List const & list) { return Map::object_t(list.begin(), list.end()); }
};
#endif

#ifdef VX_BENCH_BOOST_JSON
struct BoostJson {
    using Map = boost::json::object;
    using Name = std::string;

    template <typename T>
    static void add(Map & map, Name const & name, T const & value) {
        map.emplace(name, value);
    }

    static void write(Map & map, Name const & name, long long number) { map[name] = number; }

    static auto find(Map const & map, Name const & name) { return &map.find(name)->value(); }

    using List = std::vector<std::pair<std::string, boost::json::value>>;

    static auto make_map(List const & list) { return Map(list.begin(), list.end()); }
};
#endif

template <typename Peer>
struct Maps {
    using Map = typename Peer::Map;
    using Names = std::vector<typename Peer::Name>;

    static Names names(unsigned int count) {
        std::vector<std::string> const texts = attribute_names(count);
        return Names(texts.begin(), texts.end());
    }

    static Map make(Names const & names, bool isMixed) {
        Map map;
        for (unsigned int i = 0; i < names.size(); ++i) {
            if (isMixed) {
                add_mixed(map, names[i], i);
            } else {
                Peer::add(map, names[i], 1000LL + i);
            }
        }
        return map;
    }

    static void add_mixed(Map & map, typename Peer::Name const & name, unsigned int number) {
        switch (number % 5) {
        case 0:
            return Peer::add(map, name, 1000LL + number);
        case 1:
            return Peer::add(map, name, number % 2 == 0);
        case 2:
            return Peer::add(map, name, 0.25 * number);
        case 3:
            return Peer::add(map, name, std::string("a text of some words"));
        default:
            return Peer::add(map, name, static_cast<long long>(number % 8));
        }
    }

    static void build(benchmark::State & state, unsigned int size, bool isMixed) {
        Names const ready = names(size);
        measure(state, 1, [&] {
            Map map = make(ready, isMixed);
            benchmark::DoNotOptimize(map);
        });
    }

    /// Copies all elements at once from a list of names and values.
    static void build_from_list(benchmark::State & state, unsigned int size, bool) {
        typename Peer::List list;
        for (auto const & name : names(size)) {
            list.emplace_back(name, 1000LL + static_cast<long long>(list.size()));
        }
        measure(state, 1, [&] {
            auto map = Peer::make_map(list);
            benchmark::DoNotOptimize(map);
        });
    }

    static void copy(benchmark::State & state, unsigned int size, bool isMixed) {
        Map const map = make(names(size), isMixed);
        measure(state, 1, [&] {
            Map other(map);
            benchmark::DoNotOptimize(other);
        });
    }

    static void copy_and_write(benchmark::State & state, unsigned int size, bool isMixed) {
        Names const ready = names(size);
        Map const map = make(ready, isMixed);
        measure(state, 1, [&] {
            Map other(map);
            Peer::write(other, ready[size / 2], 77'777);
            benchmark::DoNotOptimize(other);
        });
    }

    /// Looks all names up, in another order than that in which they were added.
    static void find(benchmark::State & state, unsigned int size, bool isMixed) {
        Names ready = names(size);
        Map const map = make(ready, isMixed);
        std::shuffle(ready.begin(), ready.end(), std::mt19937(2));
        measure(state, size, [&] {
            for (auto const & name : ready) {
                auto const * const value = Peer::find(map, name);
                benchmark::DoNotOptimize(value);
            }
        });
    }

    /// Looks all names up by their texts.
    static void find_text(benchmark::State & state, unsigned int size, bool isMixed) {
        Map const map = make(names(size), isMixed);
        std::vector<std::string> texts = attribute_names(size);
        std::shuffle(texts.begin(), texts.end(), std::mt19937(2));
        measure(state, size, [&] {
            for (std::string const & text : texts) {
                auto const * const value = Peer::find(map, text);
                benchmark::DoNotOptimize(value);
            }
        });
    }

    static void compare(benchmark::State & state, unsigned int size, bool isMixed) {
        Map const a = make(names(size), isMixed);
        Map const b = make(names(size), isMixed);
        measure(state, 1, [&] {
            bool const equal = a == b;
            if (!equal) {
                state.SkipWithError("the maps are not equal");
            }
        });
    }

    static void add_all(char const * peer) {
        auto const add_sizes = [peer](std::string const & work, auto body,
                                      std::initializer_list<unsigned int> sizes, bool isMixed) {
            for (unsigned int const size : sizes) {
                add(work + "_" + std::to_string(size) + (isMixed ? "_mixed" : ""), peer,
                    [=](benchmark::State & state) { body(state, size, isMixed); });
            }
        };
        for (bool const isMixed : {false, true}) {
            add_sizes("build_map", build, {100}, isMixed);
            add_sizes("copy_map_and_write_one", copy_and_write, {100, 10'000}, isMixed);
        }
        add_sizes("build_map_from_list", build_from_list, {100}, false);
        add_sizes("copy_map", copy, {100}, false);
        add_sizes("find", find, {16, 100, 10'000}, false);
        add_sizes("find_text", find_text, {16, 100}, false);
        add_sizes("equal_maps", compare, {10'000}, false);
    }
};

} // namespace

void add_map_benchmarks() {
    Maps<Vxattribute>::add_all("vxattribute");
    Maps<StdMap>::add_all("std_map");
#ifdef VX_BENCH_NLOHMANN
    Maps<Nlohmann>::add_all("nlohmann");
#endif
#ifdef VX_BENCH_BOOST_JSON
    Maps<BoostJson>::add_all("boost_json");
#endif
}

} // namespace vxbench
