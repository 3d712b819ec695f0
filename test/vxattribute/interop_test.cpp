// The rule under test: values pass through trees of nlohmann unchanged, and JSON through values as
// its text does. What is shown by streams, fmt and a failed expectation is what to_text returns.

#include "vxattribute/format.h"
#include "vxattribute/nlohmann_json.h"
#include "vxattribute/samples.h"
#include "vxattribute/vxattribute.h"
#include "vxcore/error_exception.h"

#include <fmt/ranges.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <iomanip>
#include <sstream>

namespace {

using namespace vxattribute;

TEST(NlohmannJson, ValuesComeBackEqual) {
    for (vxtest::Sample const & sample : vxtest::samples()) {
        nlohmann::json const tree = sample.value;
        EXPECT_EQ(tree.get<AttributeValue>(), sample.value) << tree;
    }
    AttributeMap const map = make_map({{"a", make_list<long long>({1, 2})}, {"b", true}});
    nlohmann::ordered_json tree = MutableAttributeMap(map);
    tree["a"][1] = map;
    EXPECT_EQ(tree["a"][1].get<MutableAttributeMap>(), map);
    EXPECT_EQ(nlohmann::json(0.5).get<AttributeValue>(), AttributeValue(0.5));
    EXPECT_TRUE(nlohmann::json(nullptr).get<AttributeValue>().is_null());
    EXPECT_THROW((nlohmann::json{1, 2}.get<AttributeMap>()), vxcore::ErrorException);
}

TEST(Format, ShowsTheTextWithTheSpecificationOfTexts) {
    AttributeValue const value = 8080;
    MutableAttributeMap const map = make_map({{"port", value}});
    EXPECT_EQ(fmt::format("{:*>6}{}{}{:>19}", AttributeName("name"), map, Attribute("n", 1), value),
              "**name\n 'port' => [Integer: {8080}]'n' => [Integer: {1}]  [Integer: {8080}]");
    std::ostringstream stream;
    stream << std::setw(19) << value << map;
    EXPECT_EQ(stream.str(), "  [Integer: {8080}]\n 'port' => [Integer: {8080}]");
    EXPECT_EQ(testing::PrintToString(AttributeMap(map)), "{ (port, [Integer: {8080}]) }");
}

} // namespace
