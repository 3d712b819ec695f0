#include "vxattribute/deep_merge.h"

#include "vxattribute/map/nested_maps_internal.h"

#include <optional>
#include <vector>

namespace vxattribute {

namespace {

struct MapPair {
    AttributeMapBase const & winner;
    AttributeMapBase const & other;
};

/// Moves `element` forward to the first whose name is not below `name`.
template <typename Iterator>
void advance_to(Iterator & element, Iterator end, AttributeName const & name) {
    while (element != end && element->first < name) {
        ++element;
    }
}

/// A pair of maps that is being merged. The constructor merges the two without looking into nested
/// maps. Then each value that is a map on both sides is replaced by its merge. All three maps have
/// the same order, so each is walked once and no name is searched for.
///
/// The object may be moved: its iterators point into holders, which stay where they are.
class OpenMerge {
  public:
    explicit OpenMerge(MapPair const & pair)
        : m_winner(pair.winner.begin()), m_winnerEnd(pair.winner.end()),
          m_other(pair.other.begin()), m_otherEnd(pair.other.end()),
          m_merged(pair.winner.merged_with(pair.other)) {}

    /// The next pair of maps of one name. Pass their merge to `set_inner` before the next call.
    std::optional<MapPair> next_inner() {
        for (; m_winner != m_winnerEnd; ++m_winner) {
            AttributeMap const * const winner = impl::scalar_map(m_winner->second);
            AttributeMap const * const other = winner != nullptr ? other_map() : nullptr;
            if (other != nullptr) {
                return MapPair{*winner, *other};
            }
        }
        return std::nullopt;
    }

    void set_inner(AttributeMap const & merged) {
        if (!m_mergedPlace) {
            m_mergedPlace = m_merged.begin();
        }
        advance_to(*m_mergedPlace, m_merged.end(), m_winner->first);
        (*m_mergedPlace)->second = merged;
        ++m_winner;
    }

    AttributeMap take() { return std::move(m_merged); }

  private:
    /// The one map that the other side has under the winner's name, or null.
    AttributeMap const * other_map() {
        advance_to(m_other, m_otherEnd, m_winner->first);
        bool const isFound = m_other != m_otherEnd && m_other->first == m_winner->first;
        return isFound ? impl::scalar_map(m_other->second) : nullptr;
    }

    using Iterator = AttributeMapBase::const_iterator;

    Iterator m_winner;
    Iterator m_winnerEnd;
    Iterator m_other;
    Iterator m_otherEnd;
    MutableAttributeMap m_merged;
    // Set at the first replacement. If one map is empty, the merge shares the holder of the other,
    // and `begin` would copy it for nothing.
    std::optional<MutableAttributeMap::iterator> m_mergedPlace;
};

} // namespace

AttributeMap merged_deep(AttributeMapBase const & winner, AttributeMapBase const & other) {
    // A walk with a list in place of recursion, the innermost pair last. A pair is merged when all
    // pairs inside it are.
    std::vector<OpenMerge> open;
    open.emplace_back(MapPair{winner, other});
    while (true) {
        if (std::optional<MapPair> const inner = open.back().next_inner()) {
            open.emplace_back(*inner);
            continue;
        }
        AttributeMap merged = open.back().take();
        open.pop_back();
        if (open.empty()) {
            return merged;
        }
        open.back().set_inner(merged);
    }
}

} // namespace vxattribute
