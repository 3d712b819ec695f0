// The rules under test: differences are few where few elements changed, and applying them to the
// first value makes the second.

#include "vxattribute/vxattribute.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <random>

namespace {

using namespace vxattribute;

std::string text_of(std::optional<AttributeValue> const & value) {
    return value ? value_to_json(*value, {.sorted_names = true}) : "-";
}

/// A line for each difference: the paths, where they differ, and the values.
std::string lines_of(AttributeValue const & before, AttributeValue const & after) {
    std::string lines;
    for (Difference const & difference : find_differences(before, after)) {
        bool const isMoved = difference.old_path != difference.path;
        lines += (isMoved ? difference.old_path + " > " : "") + difference.path + ": " +
                 text_of(difference.old_value) + " " + text_of(difference.new_value) + "\n";
    }
    EXPECT_EQ(is_identical(before, after), lines.empty());
    return lines;
}

TEST(Difference, SaysWhatChangedAndWhere) {
    struct Case {
        char const * before;
        char const * after;
        char const * lines;
    };

    for (Case const & row : {
             Case{R"({"b":1,"a":1,"d":{"x/y":1}})", R"({"a":2,"c":null,"d":{"x/y":[1,2]}})",
                  "a: 1 2\nb: 1 -\nc: - null\nd/x~1y: 1 [1,2]\n"},
             Case{R"({"l":[1,2,3,4]})", R"({"l":[9,1,2,4,5]})",
                  "l/0: - 9\nl/2 > l/3: 3 -\nl/4: - 5\n"},
             Case{R"({"l":["a","b","c"]})", R"({"l":["a","x","y","c"]})",
                  "l/1: \"b\" \"x\"\nl/2: - \"y\"\n"},
             Case{R"({"l":[1,2]})", R"({"l":1})", "l: [1,2] 1\n"},
             Case{R"({"l":[1,2]})", R"({"l":["1","2"]})", "l: [1,2] [\"1\",\"2\"]\n"},
             Case{R"([{"n":1,"v":1},{"n":2,"v":2},{"n":3,"v":3},{"n":4,"v":4}])",
                  R"([{"n":1,"v":1},{"n":3,"v":9},{"n":4,"v":4},{"m":1}])",
                  "1: {\"n\":2,\"v\":2} -\n2/v > 1/v: 3 9\n4 > 3: - {\"m\":1}\n"},
             Case{R"([{"n":1},{"x":1},{"n":2}])", R"([{"n":1},{"y":1},{"z":1},{"n":2}])",
                  "1: {\"x\":1} -\n2 > 1: - {\"y\":1}\n2: - {\"z\":1}\n"},
             Case{R"([{"n":1},{"n":2}])", R"({"n":1})", ": [{\"n\":1},{\"n\":2}] {\"n\":1}\n"},
         }) {
        EXPECT_EQ(lines_of(value_from_json(row.before), value_from_json(row.after)), row.lines)
            << row.before;
    }
    EXPECT_EQ(lines_of(make_map({{"", make_map({{"x", 1}})}}), make_map({{"", AttributeMap()}})),
              "/x: 1 -\n");
    double const nan = std::nan("");
    EXPECT_EQ(lines_of(make_list({nan, 0.0, 1.0}), make_list({nan, -0.0, 1.0})),
              "1: {\"vxserialize\":\"0.0\"} {\"vxserialize\":\"-0.0\"}\n");
    EXPECT_EQ(lines_of(SerializedValue("a", nullptr), SerializedValue("b", nullptr)).empty(),
              false);
}

/// A value as a tree that can be changed by paths. Its lists may have any number of elements on
/// the way.
struct Tree {
    AttributeValue leaf; // of what is neither a map nor a list
    std::optional<std::map<std::string, Tree>> names;
    std::optional<std::vector<Tree>> list;

    explicit Tree(AttributeValue const & value) {
        if (value.is_multivalue()) {
            list.emplace();
            for (unsigned int i = 0; i != value.size(); ++i) {
                list->emplace_back(value.subrange(i, 1));
            }
        } else if (value.type() == ValueTypeId::typeAttributeMap && !value.empty()) {
            names.emplace();
            for (auto const & [name, inner] : value.get<AttributeMap>()) {
                names->emplace(name.value(), inner);
            }
        } else {
            leaf = value;
        }
    }

    friend bool operator==(Tree const & a, Tree const & b) {
        return is_identical(a.leaf, b.leaf) && a.names == b.names && a.list == b.list;
    }

    void apply(Difference const & difference, std::string_view path) {
        std::size_t const slash = path.find('/');
        std::string const step(path.substr(0, slash));
        auto const index = list ? std::stol(step) : 0;
        auto const child = [&]() -> Tree & {
            return list ? list->at(static_cast<std::size_t>(index)) : names->at(step);
        };
        if (slash != path.npos) {
            child().apply(difference, path.substr(slash + 1));
            return;
        }
        if (difference.old_value) {
            ASSERT_EQ(child(), Tree(*difference.old_value));
            list ? void(list->erase(list->begin() + index)) : void(names->erase(step));
        }
        if (difference.new_value && list) {
            list->insert(list->begin() + index, Tree(*difference.new_value));
        } else if (difference.new_value) {
            ASSERT_TRUE(names->emplace(step, *difference.new_value).second);
        }
    }
};

using Random = std::minstd_rand;

AttributeMap random_map(Random & random, unsigned int depth);

template <typename T, typename Make>
AttributeValue random_list(Random & random, Make make) {
    std::vector<T> elements;
    for (auto left = random() % 6; left != 0; --left) {
        elements.push_back(make());
    }
    return make_list(std::span<T const>(elements));
}

/// A value of few kinds, so that any two have much in common.
AttributeValue random_value(Random & random, unsigned int depth) {
    double const doubles[] = {std::nan(""), 0.0, -0.0};
    switch (random() % (depth != 0 ? 6 : 3)) {
    case 0:
        return random_list<long long>(random, [&] { return static_cast<int>(random() % 3); });
    case 1:
        return random_list<double>(random, [&] { return doubles[random() % 3]; });
    case 2:
        return {};
    case 3:
        return random_map(random, depth - 1);
    default:
        return random_list<AttributeMap>(random, [&] { return random_map(random, depth - 1); });
    }
}

AttributeMap random_map(Random & random, unsigned int depth) {
    MutableAttributeMap map;
    for (char const * name : {"a", "b", "c"}) {
        if (random() % 3 != 0) {
            map.add(name, random_value(random, depth));
        }
    }
    return map;
}

TEST(Difference, MakesTheSecondValueOfTheFirst) {
    Random random(1);
    unsigned int nested = 0;
    for (int i = 0; i < 5000; ++i) {
        AttributeValue const before = random_value(random, 3), after = random_value(random, 3);
        Tree tree(before);
        AttributeMap const root = make_map({{"root", before}});
        for (Difference const & difference : find_differences(before, after)) {
            if (difference.path.empty()) { // no name is
                tree = Tree(*difference.new_value);
            } else {
                tree.apply(difference, difference.path);
            }
            AttributeValue const * const old = find_path(root, "root/" + difference.old_path);
            if (old != nullptr && !difference.is_added()) {
                EXPECT_TRUE(is_identical(*old, *difference.old_value)) << difference.old_path;
                ++nested;
            }
        }
        ASSERT_EQ(tree, Tree(after)) << to_text(before) << to_text(after);
    }
    EXPECT_GT(nested, 1000u);
}

TEST(Difference, ComparesByIndexBeyondItsLimits) {
    for (unsigned int const count : {2000u, 2100u}) { // pairs of maps: below and above the limit
        std::vector<AttributeMap> before, after;
        for (unsigned int i = 0; i != count; ++i) {
            before.push_back(make_map({{"n", i}}));
            after.push_back(make_map({{i + 1 == count ? "n" : "m", i + count}}));
        }
        auto const differences = find_differences(make_list(std::span<AttributeMap const>(before)),
                                                  make_list(std::span<AttributeMap const>(after)));
        EXPECT_EQ(differences.front().path, count == 2000 ? "0" : "0/m");
    }
    std::vector<long long> even, odd; // no element is in both: too many steps
    for (long long i = 0; i != 300'000; i += 2) {
        even.push_back(i);
        odd.push_back(i + 1);
    }
    even[149'990] = odd[149'990] = -1;
    unsigned int count = 0;
    visit_differences(make_list(std::span<long long const>(even)),
                      make_list(std::span<long long const>(odd)),
                      [&](Difference const & difference) {
                          count += count == 149'990;
                          EXPECT_EQ(difference.path, std::to_string(count++));
                          EXPECT_TRUE(difference.old_value && difference.new_value);
                      });
    EXPECT_EQ(count, even.size());
}

} // namespace
