// The rules under test: loading a second copy of the library does not affect the copy that the
// program is linked to, and a process may end while its threads use values.

#include "copy_use.h"

#include "vxattribute/vxattribute.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

namespace {

using namespace vxattribute;

bool use_own() {
    static AttributeMap const untilTheEnd = make_map({{"ratio", 2.5}});
    return to_text(untilTheEnd).find("2.5") != std::string::npos && AttributeMap().empty() &&
           make_list<std::string>({}).get<std::string>().empty();
}

/// Exits with 0 when everything works up to the end of the process.
[[noreturn]] void run(bool unloads) {
    setenv("ZEMO_MODULEREGISTRY_DONT_FAIL_ON_DUPLICATES", "", 1);
    void * const second = load(VX_COPY);
    bool const good = use_own() && use(second);
    if (unloads) {
        dlclose(second);
    }
    bool const isThere = dlopen(VX_COPY, RTLD_NOW | RTLD_NOLOAD) != nullptr;
    std::exit(good && use_own() && isThere != unloads ? 0 : 1);
}

TEST(LinkedCopyDeathTest, OutlivesALoadedOne) {
    EXPECT_EXIT(run(true), testing::ExitedWithCode(0), "already loaded");
    EXPECT_EXIT(run(false), testing::ExitedWithCode(0), "already loaded");
}

TEST(LinkedCopyDeathTest, MayEndWhileValuesAreInUse) {
    auto const work = [] {
        for (;;) { // more values than a thread keeps blocks for
            std::vector<AttributeValue> const values(300, AttributeValue(2.5));
        }
    };
    auto const end = [&] {
        std::thread(work).detach();
        std::thread(work).detach();
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        std::exit(0);
    };
    for (int i = 0; i < 5; ++i) {
        EXPECT_EXIT(end(), testing::ExitedWithCode(0), "");
    }
}

} // namespace
