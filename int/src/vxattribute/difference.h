#pragma once

#include "vxattribute/attribute_value.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// The differences of two values, by path.
///
///     for (Difference const & difference : find_differences(before, after)) {
///         std::cout << difference.path << (difference.is_added() ? " is new\n" : " differs\n");
///     }
///
/// Maps are compared name by name. Lists of two or more elements are aligned: of each pair of equal
/// elements in a longest common subsequence, nothing is reported. Between these, maps are paired by
/// what they have in common, and other elements by their order; what has no partner is removed or
/// added. All other values that are not identical are one difference each.
///
/// Identical means the same type and the same elements. Doubles are compared by their bits: a NaN
/// is identical to its copy, and the two zeros differ.
///
/// Cost. O(content) without lists of maps, and O(n log n) to sort names. Lists of n and m elements
/// take O((n + m) log (n + m)) comparisons, and O((n + m) d) steps where d elements are not in
/// both. All lists together take at most 2^27 steps, about a second; one list takes 20 bytes for
/// each element and at most some 25 MiB beside that. When no steps are left, lists and ends of
/// lists are compared by index. So are lists of maps inside eight other lists, because aligning
/// looks at all that is nested in them, and more than 2^22 pairs of maps between two equal
/// elements. Depth takes memory and no stack.
namespace vxattribute {

/// One difference: a value that was added, removed or replaced.
///
/// The paths are those of map_path.h, with the index as one more step for elements of lists that
/// are not maps, which `find_path` does not find. If the two values are neither two single maps nor
/// two lists of the same type, the only difference is at the empty path: the values themselves.
struct Difference {
    /// The place in the second value; of a removed value, the place that it would have. When the
    /// differences are applied one after the other to the first value, this is also the place at
    /// that time: indexes count what was added and removed before.
    std::string path;

    /// The place in the first value; of an added value, the place before which it was inserted.
    /// It differs from `path` only in indexes.
    std::string old_path;

    std::optional<AttributeValue> old_value; ///< in the first value; nothing if it was added
    std::optional<AttributeValue> new_value; ///< in the second value; nothing if it was removed

    bool is_added() const noexcept { return !old_value; }

    bool is_removed() const noexcept { return !new_value; }
};

/// All differences, in the order of the bytes of names and of the indexes of lists. None when the
/// values are identical. Maps may be passed as values.
///
/// @cost   As described above. Each difference has its paths: long names that are in the paths of
///         many differences take memory for each of them. `visit_differences` does not.
/// @raises std::bad_alloc.
VXATTRIBUTE_API std::vector<Difference> find_differences(AttributeValue const & before,
                                                         AttributeValue const & after);

/// Calls `take` for each difference, in the same order.
///
/// @param take  Its argument is one object that changes from call to call: copy what is kept.
/// @raises std::bad_alloc, and what `take` raises, which ends the search.
VXATTRIBUTE_API void visit_differences(AttributeValue const & before, AttributeValue const & after,
                                       std::function<void(Difference const &)> const & take);

/// Whether there are no differences. Unlike `==`, this compares doubles by their bits.
///
/// @cost   Up to the first difference, without aligning lists.
/// @raises std::bad_alloc: for nested maps.
VXATTRIBUTE_API bool is_identical(AttributeValue const & a, AttributeValue const & b);

} // namespace vxattribute
