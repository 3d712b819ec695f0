#include "vxattribute/difference/common_runs_internal.h"
#include "vxattribute/difference/exact_order_internal.h"
#include "vxattribute/difference/list_edits_internal.h"
#include "vxattribute/difference/similar_maps_internal.h"
#include "vxattribute/map/nested_maps_internal.h"

#include <algorithm>

namespace vxattribute::impl {

namespace {

/// Elements of a list, from `begin` up to `end`.
struct Range {
    unsigned int begin;
    unsigned int end;

    unsigned int size() const noexcept { return end - begin; }
};

struct Element {
    AttributeValue const & list;
    unsigned int index;
};

template <typename T>
int order_of(Element const & a, Element const & b) {
    return exact_order(a.list.at<T>(a.index), b.list.at<T>(b.index));
}

template <typename T>
unsigned int hash_of(Element const & element) {
    return ValueTypeTraits<T>::hash(element.list.at<T>(element.index));
}

class ListComparison {
  public:
    ListComparison(AttributeValue const & a, AttributeValue const & b, long long & stepsLeft)
        : m_a(a), m_b(b), m_stepsLeft(stepsLeft) {
        for_element_type(a.type().id(), [this]<typename T>() {
            m_order = order_of<T>;
            m_hash = hash_of<T>;
        });
    }

    std::vector<ListEdit> run() {
        Range a{0, m_a.size()};
        Range b{0, m_b.size()};
        if (m_stepsLeft > 0) {
            trim(a, b);
            align(a, b);
        }
        add_gap(a, b);
        return std::move(m_edits);
    }

  private:
    bool is_same(unsigned int i, unsigned int j) const { return m_order({m_a, i}, {m_b, j}) == 0; }

    /// Leaves out what is identical at both ends.
    void trim(Range & a, Range & b) const {
        while (a.size() != 0 && b.size() != 0 && is_same(a.begin, b.begin)) {
            ++a.begin;
            ++b.begin;
        }
        // A single pair has been compared already, which takes long if it holds much.
        while (a.size() != 0 && b.size() != 0 && !is_single_pair(a, b) &&
               is_same(a.end - 1, b.end - 1)) {
            --a.end;
            --b.end;
        }
    }

    static bool is_single_pair(Range a, Range b) noexcept { return a.size() == 1 && b.size() == 1; }

    /// Adds the edits up to the last run of identical elements, and leaves what follows it.
    void align(Range & a, Range & b) {
        if (a.size() == 0 || b.size() == 0 || is_single_pair(a, b)) {
            return; // the usual cases of one edit need no alignment
        }
        Range const wholeA = a;
        Range const wholeB = b;
        std::vector<unsigned int> const numbers = number_elements(a, b);
        auto const ofA = std::span(numbers).first(a.size());
        auto const ofB = std::span(numbers).subspan(a.size());
        for (CommonRun const & run : common_runs(ofA, ofB, m_stepsLeft)) {
            unsigned int const nextOfA = wholeA.begin + run.a;
            unsigned int const nextOfB = wholeB.begin + run.b;
            add_gap({a.begin, nextOfA}, {b.begin, nextOfB});
            a.begin = nextOfA + run.size;
            b.begin = nextOfB + run.size;
        }
    }

    /// A number for each element of `a` and then of `b`; identical elements have the same number.
    /// Elements are sorted for this, since a hash table would be slow for texts that a stranger
    /// has chosen. Their hashes save most comparisons.
    std::vector<unsigned int> number_elements(Range a, Range b) const {
        struct Place {
            unsigned int hash;
            std::size_t index;
        };

        auto const element = [&](std::size_t index) {
            return index < a.size()
                       ? Element{m_a, a.begin + static_cast<unsigned int>(index)}
                       : Element{m_b, b.begin + static_cast<unsigned int>(index - a.size())};
        };
        auto const order = [&](Place const & x, Place const & y) {
            return x.hash != y.hash ? (x.hash < y.hash ? -1 : 1)
                                    : m_order(element(x.index), element(y.index));
        };
        std::vector<Place> places(std::size_t{a.size()} + b.size());
        for (std::size_t i = 0; i != places.size(); ++i) {
            places[i] = {m_hash(element(i)), i};
        }
        std::sort(places.begin(), places.end(),
                  [&](Place const & x, Place const & y) { return order(x, y) < 0; });
        std::vector<unsigned int> numbers(places.size());
        unsigned int number = 0;
        for (std::size_t i = 0; i != places.size(); ++i) {
            number += i != 0 && order(places[i - 1], places[i]) != 0;
            numbers[places[i].index] = number;
        }
        return numbers;
    }

    /// Adds the edits between two runs of identical elements.
    void add_gap(Range a, Range b) {
        if (holds_maps(m_a) && a.size() != 0 && b.size() != 0) {
            if (auto const pairs =
                    similar_maps(maps_of(m_a).subspan(a.begin, a.size()),
                                 maps_of(m_b).subspan(b.begin, b.size()), m_stepsLeft)) {
                add_similar(a, b, *pairs);
                return;
            }
        }
        for (; a.size() != 0 && b.size() != 0; ++a.begin, ++b.begin) {
            add_pair(a.begin, b.begin);
        }
        add_unpaired(a, b);
    }

    void add_similar(Range a, Range b,
                     std::span<std::pair<unsigned int, unsigned int> const> pairs) {
        Range const wholeA = a;
        Range const wholeB = b;
        for (auto const & [i, j] : pairs) {
            add_unpaired({a.begin, wholeA.begin + i}, {b.begin, wholeB.begin + j});
            add_pair(wholeA.begin + i, wholeB.begin + j);
            a.begin = wholeA.begin + i + 1;
            b.begin = wholeB.begin + j + 1;
        }
        add_unpaired(a, b);
    }

    /// Identical maps may be a pair: comparing them would take as long as the walk through them.
    void add_pair(unsigned int i, unsigned int j) {
        if (holds_maps(m_a) || !is_same(i, j)) {
            m_edits.push_back({i, j, true, true});
        }
    }

    void add_unpaired(Range a, Range b) {
        for (unsigned int i = a.begin; i != a.end; ++i) {
            m_edits.push_back({i, b.begin, true, false});
        }
        for (unsigned int j = b.begin; j != b.end; ++j) {
            m_edits.push_back({a.end, j, false, true});
        }
    }

    AttributeValue const & m_a;
    AttributeValue const & m_b;
    long long & m_stepsLeft;
    int (*m_order)(Element const & a, Element const & b) = nullptr;
    unsigned int (*m_hash)(Element const & element) = nullptr;
    std::vector<ListEdit> m_edits;
};

} // namespace

std::vector<ListEdit> list_edits(AttributeValue const & a, AttributeValue const & b,
                                 long long & stepsLeft) {
    return ListComparison(a, b, stepsLeft).run();
}

} // namespace vxattribute::impl
