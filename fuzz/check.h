#pragma once

#include <cstdio>

namespace vxfuzz {

/// Prints the broken rule and ends the process at once, so that the fuzzer keeps the input.
[[noreturn]] inline void fail(char const * rule) {
    std::fprintf(stderr, "broken: %s\n", rule);
    __builtin_trap();
}

/// Fails unless `holds` is true. `rule` is a sentence that says what must hold.
inline void check(bool holds, char const * rule) {
    if (!holds) [[unlikely]] {
        fail(rule);
    }
}

} // namespace vxfuzz
