// The rules under test: the table keeps the first entry of a name. A second copy of the library in
// one process reports itself and stops the process, unless the environment allows it; when it is
// unloaded, its entry goes too. A library that was used can be unloaded, whatever else of its
// family stays loaded.

#include "copy_use.h"
#include "support/allocation.h"

#include "vxmoduleregistry/module_registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <latch>
#include <thread>

namespace {

using namespace vxmoduleregistry;

class ModuleCopies : public testing::Test {
  protected:
    /// Loads the first copy. The death tests load the second in a child process.
    void SetUp() override {
        unsetenv("ZEMO_MODULEREGISTRY_DONT_FAIL_ON_DUPLICATES");
        first = load(VX_LIBRARY);
        ASSERT_NE(first, nullptr) << dlerror();
        ASSERT_TRUE(query_module_info("vxattribute", &info));
    }

    void TearDown() override { dlclose(first); }

    bool is_gone() {
        return dlopen(VX_LIBRARY, RTLD_NOW | RTLD_NOLOAD) == nullptr &&
               !query_module_info("vxattribute", &info);
    }

    /// Returns the report on the second copy. Both were built at once, so their data is the same.
    std::string report() const {
        return "ModuleRegistry: Module vxattribute is already loaded into this process!\n"
               "This is typically caused by a version or debug/release mismatch between libraries "
               "referenced by this process.\n"
               "Data of module that was already registered:\n" +
               info.text + "\nData of new module that conflicts:\n" + info.text +
               "\n\nAborting...\n";
    }

    void * first = nullptr;
    ModuleInfo info;
};

using ModuleCopiesDeathTest = ModuleCopies;

TEST_F(ModuleCopies, TheInformationIsXmlInTheAgreedOrder) {
    EXPECT_THAT(info.text,
                testing::MatchesRegex(
                    "<ModuleInfo name=\"vxattribute\" type=\"dll\" tool=\"[a-z]+[0-9]+\" "
                    "build=\"release\" arch=\"x86\">\n"
                    "  <FileInfo>\n"
                    "    <Item name=\"CompanyName\">[^<]+</Item>\n"
                    "    <Item name=\"FileVersion\">[0-9]+[.][0-9]+[.][0-9]+[.][0-9]+</Item>\n"
                    "    <Item name=\"InternalName\">vxattribute</Item>\n"
                    "    <Item name=\"OriginalFilename\">vxattribute-w32r-18-1.dll</Item>\n"
                    "    <Item name=\"LegalCopyright\">[^<]+</Item>\n"
                    "    <Item name=\"ZEMOBuildMachine\">[^<]+</Item>\n"
                    "    <Item name=\"ZEMOBuildName\">[^<]+</Item>\n"
                    "    <Item name=\"ZEMOBuildChangelist\">[0-9]+</Item>\n"
                    "    <Item name=\"ZEMOBuildNum\">[0-9]+</Item>\n"
                    "    <Item name=\"ZEMOBuildTimestamp\">"
                    "[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}</Item>\n"
                    "    <Item name=\"ZEMOGCCBuildId\">[0-9A-F]{32}</Item>\n"
                    "  </FileInfo>\n"
                    "</ModuleInfo>\n"));
}

/// Each thread keeps free blocks, which unloading returns. A sibling that stays loaded keeps
/// nothing.
TEST_F(ModuleCopies, AUsedModuleGoesAndMayComeAgain) {
    std::latch used(2), unloaded(1);
    void * const sibling = load(VX_SIBLING);
    dlclose(first);
    long const before = vxtest::live_blocks();
    first = load(VX_LIBRARY);
    std::thread other([&] {
        EXPECT_TRUE(use(first));
        used.arrive_and_wait();
        unloaded.wait();
    });
    EXPECT_TRUE(use(first));
    used.arrive_and_wait();
    dlclose(first);
    EXPECT_TRUE(is_gone());
    unloaded.count_down();
    other.join();
    EXPECT_EQ(vxtest::live_blocks(), before);
    first = load(VX_COPY); // stops the process when the first copy is still there
    EXPECT_TRUE(use(first));
    dlclose(sibling);
    EXPECT_TRUE(use(first));
}

/// Unloads in both orders, with the symbols of the first hidden from later libraries and visible.
TEST_F(ModuleCopies, EachLeavesTheOtherAtWork) {
    setenv("ZEMO_MODULEREGISTRY_DONT_FAIL_ON_DUPLICATES", "", 1);
    dlclose(first);
    for (int const mode : {RTLD_LOCAL, RTLD_GLOBAL}) {
        for (bool const inOrder : {true, false}) {
            void * const a = load(VX_LIBRARY, mode);
            void * const b = load(VX_COPY);
            EXPECT_TRUE(use(a));
            EXPECT_TRUE(use(b));
            dlclose(inOrder ? a : b);
            EXPECT_TRUE(use(inOrder ? b : a));
            dlclose(inOrder ? b : a);
            EXPECT_TRUE(is_gone());
        }
    }
    first = load(VX_LIBRARY);
}

TEST_F(ModuleCopiesDeathTest, TheFirstIsSilent) {
    dlclose(first);
    EXPECT_EXIT(std::_Exit(load(VX_LIBRARY) != nullptr ? 0 : 1), testing::ExitedWithCode(0),
                testing::Eq(""));
    first = load(VX_LIBRARY);
}

TEST_F(ModuleCopiesDeathTest, TheSecondStopsTheProcess) {
    EXPECT_EXIT(load(VX_COPY), testing::KilledBySignal(SIGABRT), testing::Eq(report()));
}

/// Exits with 0 when the entry goes with the second copy.
[[noreturn]] void load_and_unload_second() {
    setenv("ZEMO_MODULEREGISTRY_DONT_FAIL_ON_DUPLICATES", "", 1);
    void * const second = load(VX_COPY);
    ModuleInfo info;
    bool const wasThere = second != nullptr && query_module_info("vxattribute", &info);
    dlclose(second);
    std::_Exit(wasThere && !query_module_info("vxattribute", &info) ? 0 : 1);
}

TEST_F(ModuleCopiesDeathTest, TheEnvironmentLetsTheSecondRun) {
    EXPECT_EXIT(load_and_unload_second(), testing::ExitedWithCode(0), testing::Eq(report()));
}

/// The table keeps copies, and the first entry of a name stays.
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
