// The rule under test: the table keeps copies, and the first entry of a name stays.

#include "vxmoduleregistry/module_registry.h"

#include <gtest/gtest.h>

namespace {

using namespace vxmoduleregistry;

TEST(ModuleRegistry, KeepsCopiesOfTheFirstEntry) {
    char name[] = "some module";
    char text[] = "<first/>";
    ASSERT_TRUE(add_module_info(name, text));
    text[0] = name[0] = '!';
    EXPECT_FALSE(add_module_info("some module", "<second/>"));
    ModuleInfo info;
    EXPECT_TRUE(query_module_info("some module", &info));
    EXPECT_EQ(info.text, "<first/>");
    EXPECT_FALSE(query_module_info("!ome module", &info));
    EXPECT_EQ(info.text, "<first/>");
    EXPECT_TRUE(remove_module_info("some module"));
    EXPECT_FALSE(remove_module_info("some module"));
    EXPECT_FALSE(query_module_info("some module", &info));
}

} // namespace
