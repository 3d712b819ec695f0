// Comparing and hashing maps as elements of values. These operations of a map call those of its
// values, which call those of nested maps, so plain recursion would let the depth of a map decide
// how much stack is used. Hostile input chooses that depth. Lists of open maps alone would be safe
// too, but allocate memory for every comparison. So the first levels, which hold nearly all maps,
// recurse, and deeper ones are walked with a list.

#include "vxattribute/map/first_difference_internal.h"
#include "vxattribute/value/typed_value_internal.h"
#include "vxcore/hash.h"

#include <vector>

namespace vxattribute::impl {

namespace {

/// Levels of nested maps that recurse: a few KiB of stack.
constexpr int maxRecursion = 32;

/// Levels that may still recurse in this thread. A thread-local counter, since the public
/// operations between two levels have no parameter for it.
thread_local constinit int recursionsLeft __attribute__((tls_model("initial-exec"))) = maxRecursion;

/// Counts one level for its lifetime. Beyond the limit it is not shallow, and the map is walked
/// with a list instead.
class Recursion {
  public:
    Recursion() noexcept { --recursionsLeft; }

    Recursion(Recursion const &) = delete;
    Recursion & operator=(Recursion const &) = delete;

    ~Recursion() { ++recursionsLeft; }

    bool is_shallow() const noexcept { return recursionsLeft >= 0; }
};

// The three deep walks are not inlined, to keep the stack frames of the recursion small.

[[gnu::noinline]] int compare_deep(AttributeMap const & a, AttributeMap const & b) {
    return first_difference({&a, 1}, {&b, 1},
                            [](AttributeValue const & x, AttributeValue const & y) {
                                int const order = x.compare(y);
                                return int{order > 0} - int{order < 0};
                            });
}

[[gnu::noinline]] bool equal_deep(AttributeMap const & a, AttributeMap const & b) {
    auto const difference = [](AttributeValue const & x, AttributeValue const & y) {
        return x == y ? 0 : 1;
    };
    return first_difference({&a, 1}, {&b, 1}, difference) == 0;
}

/// A value of maps that is being hashed.
struct OpenHash {
    MapsCursor maps;
    unsigned int folded = 0; // hash of the maps before the open one
    unsigned int seed = 0;   // hash of the elements of the open map so far
};

[[gnu::noinline]] unsigned int hash_deep(AttributeMap const & map) {
    std::vector<OpenHash> open;
    open.push_back({MapsCursor({&map, 1})});
    while (true) {
        OpenHash & top = open.back();
        if (MapsCursor::Element const * const element = top.maps.next_element()) {
            top.seed = vxcore::hash_mix(top.seed, element->first.hash());
            if (holds_maps(element->second)) {
                open.push_back({MapsCursor(maps_of(element->second))});
            } else {
                top.seed = vxcore::hash_mix(top.seed, element->second.hash());
            }
            continue;
        }
        // The end of a map, or the start before the first one, which folds 0 into 0 and stays 0.
        top.folded = vxcore::hash_fold(top.folded, std::exchange(top.seed, 0));
        if (top.maps.next_map()) {
            continue;
        }
        unsigned int const hash = top.folded;
        open.pop_back();
        if (open.empty()) {
            return hash;
        }
        open.back().seed = vxcore::hash_mix(open.back().seed, hash);
    }
}

} // namespace

int ValueTypeTraits<AttributeMap>::compare(AttributeMap const & a, AttributeMap const & b) {
    Recursion const recursion;
    return recursion.is_shallow() ? a.compare(b) : compare_deep(a, b);
}

bool ValueTypeTraits<AttributeMap>::equal(AttributeMap const & a, AttributeMap const & b) {
    Recursion const recursion;
    return recursion.is_shallow() ? a == b : equal_deep(a, b);
}

unsigned int ValueTypeTraits<AttributeMap>::hash(AttributeMap const & a) {
    Recursion const recursion;
    return recursion.is_shallow() ? a.hash() : hash_deep(a);
}

} // namespace vxattribute::impl

VXATTRIBUTE_INSTANTIATE_SINGLE_ELEMENT(vxattribute::AttributeMap);
