// The program vxattr: values in files, converted, shown, compared and sealed.

#include "run.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Keeps the numbers of closed standard streams from the files that are opened later: a notice for
/// standard error would be written into one of them. The streams still fail when they are used.
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
