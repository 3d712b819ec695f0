// Compares a tag of 16 bytes with one that differs in its first or its last byte, for counting the
// instructions: compare_tags library|early first|last. The early one is the control: it stops at
// the first difference, as an ordinary comparison does.

#include "vxcrypto/constant_time.h"

#include <cstring>

namespace {

bool early_equal(unsigned char const * a, unsigned char const * b) {
    for (unsigned int i = 0; i < 16; ++i) {
        if (a[i] != b[i]) {
            return false;
        }
    }
    return true;
}

} // namespace

/// The one function whose instructions count.
extern "C" [[gnu::noinline]] bool compare_tags(bool isLibrary, unsigned char const * a,
                                               unsigned char const * b);

extern "C" bool compare_tags(bool isLibrary, unsigned char const * a, unsigned char const * b) {
    return isLibrary ? vxcrypto::constant_time_equal(a, b, 16) : early_equal(a, b);
}

int main(int argc, char ** argv) {
    if (argc != 3) {
        return 2;
    }
    bool const isLibrary = std::strcmp(argv[1], "library") == 0;
    unsigned char const tag[16] = {};
    unsigned char other[16] = {};
    compare_tags(isLibrary, tag, tag); // has the linker bind what it calls
    other[std::strcmp(argv[2], "first") == 0 ? 0 : 15] = 1;
    return compare_tags(isLibrary, tag, other) ? 1 : 0;
}
