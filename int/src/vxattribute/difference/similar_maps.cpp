#include "vxattribute/difference/similar_maps_internal.h"

#include <algorithm>

namespace vxattribute::impl {

namespace {

constexpr unsigned long long maxPairs = 1ull << 22;

/// What is compared of a map: names, and the hashes of their values. Both in map order.
struct Outline {
    AttributeMap const * map;
    std::vector<unsigned int> hashes;
};

std::vector<Outline> outlines(std::span<AttributeMap const> maps) {
    std::vector<Outline> result;
    result.reserve(maps.size());
    for (AttributeMap const & map : maps) {
        Outline & outline = result.emplace_back(Outline{&map, {}});
        outline.hashes.reserve(map.size());
        for (auto const & [name, value] : map) {
            outline.hashes.push_back(value.hash());
        }
    }
    return result;
}

/// What two maps have in common: at most five times their elements, so the limit of steps keeps
/// all sums in 32 bits. Values are compared by their hashes: a collision can only make a pair
/// that is less similar than another.
unsigned int similarity(Outline const & a, Outline const & b) {
    constexpr unsigned int forName = 1, forValue = 4;
    unsigned int sum = 0;
    auto x = a.map->begin();
    auto y = b.map->begin();
    auto hashOfX = a.hashes.begin();
    auto hashOfY = b.hashes.begin();
    while (hashOfX != a.hashes.end() && hashOfY != b.hashes.end()) {
        bool const isBehind = x->first < y->first;
        bool const isAhead = y->first < x->first;
        if (!isBehind && !isAhead) {
            sum += forName + (*hashOfX == *hashOfY ? forValue : 0u);
        }
        if (!isAhead) {
            ++x;
            ++hashOfX;
        }
        if (!isBehind) {
            ++y;
            ++hashOfY;
        }
    }
    return sum;
}

unsigned long long count_elements(std::span<AttributeMap const> maps) {
    unsigned long long count = 0;
    for (AttributeMap const & map : maps) {
        count += map.size();
    }
    return count;
}

/// The largest sums of similarities of the ends of two lists: `at(i, j)` is that of the pairs from
/// map i of the one and map j of the other on.
class Sums {
  public:
    Sums(std::vector<Outline> const & a, std::vector<Outline> const & b)
        : m_width(b.size() + 1), m_sums((a.size() + 1) * m_width) {
        for (std::size_t i = a.size(); i-- != 0;) {
            for (std::size_t j = b.size(); j-- != 0;) {
                m_sums[i * m_width + j] = std::max(
                    {at(i + 1, j), at(i, j + 1), at(i + 1, j + 1) + similarity(a[i], b[j])});
            }
        }
    }

    unsigned int at(std::size_t i, std::size_t j) const { return m_sums[i * m_width + j]; }

  private:
    std::size_t m_width;
    std::vector<unsigned int> m_sums;
};

} // namespace

std::optional<std::vector<std::pair<unsigned int, unsigned int>>>
similar_maps(std::span<AttributeMap const> a, std::span<AttributeMap const> b,
             long long & stepsLeft) {
    unsigned long long const pairs = static_cast<unsigned long long>(a.size()) * b.size();
    if (pairs > maxPairs) {
        return std::nullopt;
    }
    unsigned long long const steps =
        pairs + b.size() * count_elements(a) + a.size() * count_elements(b);
    if (stepsLeft < 0 || steps > static_cast<unsigned long long>(stepsLeft)) {
        return std::nullopt;
    }
    stepsLeft -= static_cast<long long>(steps);
    std::vector<Outline> const outlinesOfA = outlines(a);
    std::vector<Outline> const outlinesOfB = outlines(b);
    Sums const sums(outlinesOfA, outlinesOfB);
    std::vector<std::pair<unsigned int, unsigned int>> result;
    for (std::size_t i = 0, j = 0; i != a.size() && j != b.size();) {
        unsigned int const shared = similarity(outlinesOfA[i], outlinesOfB[j]);
        if (shared != 0 && sums.at(i, j) == sums.at(i + 1, j + 1) + shared) {
            result.emplace_back(static_cast<unsigned int>(i++), static_cast<unsigned int>(j++));
        } else if (sums.at(i, j) == sums.at(i + 1, j)) {
            ++i;
        } else {
            ++j;
        }
    }
    return result;
}

} // namespace vxattribute::impl
