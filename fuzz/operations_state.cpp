#include "operations_state.h"

#include "check.h"

namespace vxfuzz {

using namespace vxattribute;

void OperationsState::step() {
    if (m_input.below(2) == 0) {
        value_step(any_value());
    } else {
        map_step(any_map());
    }
    ++m_steps;
    check_all();
}

AttributeName OperationsState::name() {
    static std::array<AttributeName, 8> const names = {"",      "alpha", "beta", "gamma",
                                                       "delta", "eps",   "zeta", "eta"};
    return names[m_input.below(8)];
}

namespace {

int sign(int order) noexcept {
    return (order > 0) - (order < 0);
}

template <typename Real, typename Plain>
void check_pair(Real const & a, Plain const & plainA, Real const & b, Plain const & plainB) {
    int const order = a.compare(b);
    check(sign(order) == sign(compare(plainA, plainB)), "order agrees with the model");
    check((a == b) == equal(plainA, plainB), "equality agrees with the model");
    check((order < 0) == (a < b) && (order > 0) == (a > b) && (order <= 0) == (a <= b) &&
              (order >= 0) == (a >= b),
          "the operators agree with compare");
}

template <typename Real, typename Plain>
void check_rebuilt(Real const & real, Plain const & plain) {
    auto const fresh = rebuild(plain);
    check(real == fresh && real.compare(fresh) == 0, "a value equals one of the same content");
    check(real.hash() == fresh.hash(), "values of the same content have the same hash");
}

} // namespace

/// Compares each value and map with its model and its neighbour. Rebuilding is expensive, so each
/// call rebuilds only one value and one map, in turn.
void OperationsState::check_all() const {
    for (unsigned int i = 0; i < sm_count; ++i) {
        Value const & value = m_values[i];
        Value const & nextValue = m_values[(i + 1) % sm_count];
        check(agrees(value.real, value.plain), "a value agrees with its model");
        check_pair(value.real, value.plain, nextValue.real, nextValue.plain);
        Map const & map = m_maps[i];
        Map const & nextMap = m_maps[(i + 1) % sm_count];
        check(agrees(map.real, map.plain), "a map agrees with its model");
        check_pair<AttributeMapBase>(map.real, map.plain, nextMap.real, nextMap.plain);
    }
    unsigned int const turn = m_steps % sm_count;
    check_rebuilt(m_values[turn].real, m_values[turn].plain);
    check_rebuilt<AttributeMapBase>(m_maps[turn].real, m_maps[turn].plain);
}

} // namespace vxfuzz
