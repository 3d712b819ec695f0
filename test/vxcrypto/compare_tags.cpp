// Compares tags and keys with others that differ in the first or the last byte, so that the
// instructions can be counted: compare_tags library|early first|last. "early" is the control: it
// stops at the first difference, as an ordinary comparison does.

#include "vxcrypto/constant_time.h"
#include "vxcrypto/eax_aes.h"
#include "vxcrypto/eax_aes_context.h"

#include <cstring>

namespace {

constexpr unsigned int size = 200;
vxcrypto::Key const sealingKey(16);
constexpr unsigned char nonce[16] = {};

bool early_equal(unsigned char const * a, unsigned char const * b) {
    for (unsigned int i = 0; i < size; ++i) {
        if (a[i] != b[i]) {
            return false;
        }
    }
    return true;
}

} // namespace

/// The one function whose instructions are counted. An ordinary comparison takes 16 bytes in one
/// step, so longer ones are compared too.
///
/// @param isLast  1 when the last byte differs, otherwise 0. It is a number because a branch would
///                be counted.
/// @param a       Begins and ends with the tag of `eax`.
extern "C" [[gnu::noinline]] bool compare_tags(bool isLibrary, unsigned int isLast,
                                               vxcrypto::EaxAesContext const & eax,
                                               vxcrypto::Key const & a, vxcrypto::Key const & b) {
    if (!isLibrary) {
        return early_equal(a.data(), b.data());
    }
    unsigned char const * const tag = b.data() + isLast * (size - 16);
    bool isEqual = eax.tag_matches(tag) || a.equal(b);
    isEqual |= vxcrypto::eax_aes_verify(sealingKey, nonce, {}, nullptr, 0, tag);
    for (unsigned int const some : {16u, 17u, size}) {
        unsigned int const skipped = isLast * (size - some);
        isEqual |= vxcrypto::constant_time_equal(a.data() + skipped, b.data() + skipped, some);
    }
    return isEqual;
}

int main(int argc, char ** argv) {
    if (argc != 3) {
        return 2;
    }
    unsigned int const isLast = std::strcmp(argv[2], "last") == 0 ? 1 : 0;
    vxcrypto::Key a(size);
    vxcrypto::EaxAesContext eax(sealingKey, nonce, {});
    eax.finish();
    std::memcpy(a.mutable_data(), eax.tag(), 16);
    std::memcpy(a.mutable_data() + size - 16, eax.tag(), 16);
    vxcrypto::Key b = a.clone();
    b.mutable_data()[isLast * (size - 1)] ^= 1;
    bool const isLibrary = std::strcmp(argv[1], "library") == 0;
    return compare_tags(isLibrary, isLast, eax, a, b) ? 1 : 0;
}
