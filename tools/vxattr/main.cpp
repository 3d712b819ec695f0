// The program vxattr: values in files, converted, shown, compared and sealed.

#include "vxattr/run.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Occupies the descriptors of closed standard streams. Otherwise a file opened later could get one
/// of them, and messages for standard error would be written into that file. Using the streams
/// still fails.
void hold_closed_streams() noexcept {
    int file = 0;
    do {
        file = ::open("/", O_PATH);
    } while (file >= 0 && file <= STDERR_FILENO);
    ::close(file);
}

} // namespace

int main(int argc, char ** argv) {
    hold_closed_streams();
    return vxattr::run(argc, argv);
}
