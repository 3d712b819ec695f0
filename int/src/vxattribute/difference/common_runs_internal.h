#pragma once

#include <span>
#include <vector>

namespace vxattribute::impl {

/// Elements of two sequences that are equal, one after the other.
struct CommonRun {
    unsigned int a; ///< index of the first in the one sequence
    unsigned int b; ///< and in the other
    unsigned int size;
};

/// A longest common subsequence of two sequences of numbers, as runs in ascending order.
///
/// The algorithm is the greedy one of E. Myers, "An O(ND) Difference Algorithm and Its Variations"
/// (1986). After 1,000 differences it keeps the best way so far and starts again from its end, so
/// that memory is bounded: the subsequence may then be shorter than the longest.
///
/// @param stepsLeft  Reduced by the steps taken. When none are left, the rest has no runs.
/// @cost  O((a.size() + b.size()) d) steps for d numbers that are not in the subsequence. About
///        8 MiB of memory at most, beside the result.
std::vector<CommonRun> common_runs(std::span<unsigned int const> a, std::span<unsigned int const> b,
                                   long long & stepsLeft);

} // namespace vxattribute::impl
