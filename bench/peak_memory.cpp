#include "peak_memory.h"

#include <fstream>
#include <malloc.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace vxbench {

namespace {

/// Returns a line of /proc/self/status in bytes.
double status(std::string const & name) {
    std::ifstream file("/proc/self/status");
    for (std::string word; file >> word;) {
        if (double kibibytes = 0; word == name && file >> kibibytes) {
            return kibibytes * 1024;
        }
    }
    return 0;
}

double growth(void (*operation)(void const *), void const * argument) {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5"; // the peak begins anew
    double const before = status("VmRSS:");
    operation(argument);
    return status("VmHWM:") - before;
}

} // namespace

double peak_memory_of(void (*operation)(void const *), void const * argument) {
    int ends[2];
    if (pipe(ends) != 0) {
        return 0;
    }
    double result = 0;
    if (pid_t const child = fork(); child == 0) {
        result = growth(operation, argument);
        _exit(write(ends[1], &result, sizeof result) == sizeof result ? 0 : 1);
    } else if (child > 0) {
        if (read(ends[0], &result, sizeof result) != sizeof result) {
            result = 0;
        }
        waitpid(child, nullptr, 0);
    }
    close(ends[0]);
    close(ends[1]);
    return result;
}

} // namespace vxbench
