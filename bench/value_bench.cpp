// Makes, copies and destroys scalars and lists of numbers.

#include "measure.h"
#include "plain_map.h"

#include "vxattribute/make_value.h"

#include <numeric>
#include <vector>

#ifdef VX_BENCH_NLOHMANN
#include <nlohmann/json.hpp>
#endif
#ifdef VX_BENCH_BOOST_JSON
#include <boost/json.hpp>
#endif

namespace vxbench {

namespace {

/// Makes a value of the element and destroys it.
template <typename Value, typename Element>
void add_make(char const * work, char const * peer, Element element) {
    add(work, peer, [element](benchmark::State & state) {
        Element input = element;
        measure(state, 1, [&input] {
            benchmark::DoNotOptimize(input); // otherwise the compiler knows the element
            Value value(input);
            benchmark::DoNotOptimize(value);
        });
    });
}

/// Copies a value and destroys the copy.
template <typename Value>
void add_copy(char const * work, char const * peer, Value const & original) {
    add(work, peer, [original](benchmark::State & state) {
        measure(state, 1, [&original] {
            Value copy(original);
            benchmark::DoNotOptimize(copy);
        });
    });
}

template <typename Value>
void add_scalars(char const * peer) {
    std::string const text = "a text beyond the small ones of std::string";
    add_make<Value>("make_integer", peer, 1'234'567'890'123LL);
    add_make<Value>("make_double", peer, 1.25);
    add_make<Value>("make_string", peer, text);
    add_copy("copy_integer", peer, Value(1'234'567'890'123LL));
    add_copy("copy_double", peer, Value(1.25));
    add_copy("copy_string", peer, Value(text));
}

std::vector<long long> integers() {
    std::vector<long long> numbers(1000);
    std::iota(numbers.begin(), numbers.end(), 1'000'000);
    return numbers;
}

/// Makes a list from a range and destroys it; copies a list and destroys the copy.
template <typename Make>
void add_lists(char const * peer, Make make) {
    add("list_1000_from_range", peer, [make](benchmark::State & state) {
        std::vector<long long> const numbers = integers();
        measure(state, 1, [&] {
            auto list = make(numbers);
            benchmark::DoNotOptimize(list);
        });
    });
    add_copy("copy_list_1000", peer, make(integers()));
}

} // namespace

void add_value_benchmarks() {
    using Numbers = std::vector<long long>;
    add_scalars<vxattribute::AttributeValue>("vxattribute");
    add_scalars<PlainValue::Data>("std_variant");
    add_lists("vxattribute", [](Numbers const & numbers) {
        return vxattribute::make_list(std::span<long long const>(numbers));
    });
    add_lists("std_vector",
              [](Numbers const & numbers) { return Numbers(numbers.begin(), numbers.end()); });
#ifdef VX_BENCH_NLOHMANN
    add_scalars<nlohmann::json>("nlohmann");
    add_lists("nlohmann", [](Numbers const & numbers) { return nlohmann::json(numbers); });
#endif
#ifdef VX_BENCH_BOOST_JSON
    add_scalars<boost::json::value>("boost_json");
    add_lists("boost_json", [](Numbers const & numbers) {
        return boost::json::array(numbers.begin(), numbers.end());
    });
#endif
}

} // namespace vxbench
