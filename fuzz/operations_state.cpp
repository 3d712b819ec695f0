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
    check(sign(order) == sign(compare(plainA, plainB)), "order is that of the model");
    check((a == b) == equal(plainA, plainB), "equality is that of the model");
    check((order < 0) == (a < b) && (order > 0) == (a > b) && (order <= 0) == (a <= b) &&
              (order >= 0) == (a >= b),
          "the operators agree with compare");
}

template <typename Real, typename Plain>
void check_one(Real const & real, Plain const & plain) {
    check(agrees(real, plain), "content is that of the model");
    auto const fresh = rebuild(plain);
    check(real == fresh && real.compare(fresh) == 0, "a value equals one of the same content");
    check(real.hash() == fresh.hash(), "values of the same content have one hash");
}

} // namespace

void OperationsState::check_all() const {
    for (unsigned int i = 0; i < sm_count; ++i) {
        check_one(m_values[i].real, m_values[i].plain);
        check_one<AttributeMapBase>(m_maps[i].real, m_maps[i].plain);
        unsigned int const next = (i + 1) % sm_count;
        check_pair(m_values[i].real, m_values[i].plain, m_values[next].real, m_values[next].plain);
        check_pair<AttributeMapBase>(m_maps[i].real, m_maps[i].plain, m_maps[next].real,
                                     m_maps[next].plain);
    }
}

} // namespace vxfuzz
