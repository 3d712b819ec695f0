#pragma once

#include <cstdio>

namespace vxfuzz {

/// Says what is broken and ends the process at once, so that the fuzzer keeps the input.
[[noreturn]] inline void fail(char const * rule) {
    std::fprintf(stderr, "broken: %s\n", rule);
    __builtin_trap();
}

/// `rule` is what must hold, as a sentence.
inline void check(bool holds, char const * rule) {
    if (!holds) [[unlikely]] {
        fail(rule);
    }
}

} // namespace vxfuzz
