// The rule under test: maps of any depth are handled without stack, by the rules of shallow ones.

#include "vxattribute/samples.h"
#include "vxcore/hash.h"

#include <gtest/gtest.h>

namespace {

using namespace vxattribute;

/// @param shape  How many maps the values hold, from level to level inside out; the last one is
///               nested further.
AttributeMap nested(int levels, std::string_view shape, AttributeMap map) {
    for (int i = 0; i < levels; ++i) {
        bool const isAlone = shape[static_cast<std::size_t>(i) % shape.size()] == '1';
        map = make_map({{"n", isAlone ? AttributeValue(map)
                                      : make_list<AttributeMap>({AttributeMap(), map})}});
    }
    return map;
}

TEST(DeepMaps, AreShownTo256Levels) {
    for (auto const & [shape, mark] :
         {std::pair("1", "{...(+1)\n"), std::pair("2", "{...(+2)\n")}) {
        std::string const whole = to_text(nested(256, shape, make_map({{"x", 1}})));
        EXPECT_NE(whole.find("'x' => "), whole.npos);
        EXPECT_EQ(whole.find("...(+"), whole.npos);
        std::string const cut = to_text(nested(257, shape, make_map({{"x", 1}})));
        EXPECT_NE(cut.find(mark), cut.npos);
        EXPECT_EQ(cut.find("'x' => "), cut.npos);
    }
}

} // namespace
