// The rules under test: the program ends with an exit code whichever allocation fails, and it
// writes files and their names to the disk in an order in which a power failure loses no more than
// this run.

#include "support/allocation.h"

#include "vxattr/run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <initializer_list>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string steps; // towards the disk, as they were taken
bool isFolderBad = false;

int run(std::initializer_list<char const *> arguments) {
    char const * all[16] = {"vxattr"}; // no memory of the test's own
    std::copy(arguments.begin(), arguments.end(), all + 1);
    return vxattr::run(static_cast<int>(arguments.size()) + 1, all);
}

} // namespace

extern "C" int fsync(int file) {
    struct stat info {};

    ::fstat(file, &info);
    steps += S_ISDIR(info.st_mode) ? "sync folder, " : "sync file, ";
    errno = EIO;
    return S_ISDIR(info.st_mode) && isFolderBad ? -1 : 0;
}

extern "C" int rename(char const * from, char const * to) noexcept {
    steps += "replace, ";
    return ::renameat(AT_FDCWD, from, AT_FDCWD, to);
}

extern "C" int renameat2(int, char const * from, int, char const * to, unsigned int) noexcept {
    steps += "name, ";
    return ::renameat(AT_FDCWD, from, AT_FDCWD, to);
}

namespace {

TEST(Program, EndsWithAnExitCodeWhateverLacksMemory) {
    ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
    auto const get = [] { return run({"get", "settings.json", "level"}); };
    unsigned long const allocations = vxtest::count_allocations([&] { EXPECT_EQ(get(), 0); });
    int failures = 0;
    for (unsigned long n = 1; n <= allocations; n += 1 + n / 100) { // most while options are set up
        vxtest::fail_allocation(n);
        int const exit = get();
        vxtest::fail_allocation(0);
        EXPECT_TRUE(exit == 0 || exit == 1) << exit; // the standard library can do without some
        failures += exit;
    }
    EXPECT_TRUE(allocations == 0 || failures > 100); // ThreadSanitizer counts none
}

TEST(Program, PutsANewKeyOnTheDiskBeforeWhatItSeals) {
    std::string const path = testing::TempDir() + "vxattr." + std::to_string(::getpid());
    std::string const key = path + ".key";
    auto const seal = [&] {
        return run({"seal", "settings.json", path.c_str(), "--to", "binary", "--key-file",
                    "key.hex", "--new-data-key", key.c_str()});
    };
    EXPECT_EQ(seal(), 0);
    EXPECT_EQ(steps, "sync file, sync file, name, sync folder, replace, sync folder, ");
    EXPECT_EQ(::unlink(key.c_str()) + ::unlink(path.c_str()), 0);
    isFolderBad = true;
    testing::internal::CaptureStderr();
    EXPECT_EQ(seal(), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "vxattr: " + key + ": is in place, but its folder cannot be put on the disk: " +
                  "Input/output error\n");
    EXPECT_EQ(::unlink(key.c_str()), 0);
    EXPECT_EQ(::access(path.c_str(), F_OK), -1);
}

} // namespace
