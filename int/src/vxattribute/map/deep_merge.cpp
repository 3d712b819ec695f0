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

/// A pair of maps that is being merged.
class OpenMerge {
  public:
    explicit OpenMerge(MapPair const & pair)
        : m_next(pair.winner.begin()), m_end(pair.winner.end()), m_other(&pair.other),
          m_merged(pair.winner.merged_with(pair.other)) {}

    /// The next two maps of one name, whose merge `set_inner` takes.
    std::optional<MapPair> next_inner() {
        for (; m_next != m_end; ++m_next) {
            AttributeMap const * const winner = impl::scalar_map(m_next->second);
            AttributeValue const * const otherValue =
                winner != nullptr ? m_other->query_ptr(m_next->first) : nullptr;
            AttributeMap const * const other =
                otherValue != nullptr ? impl::scalar_map(*otherValue) : nullptr;
            if (other != nullptr) {
                return MapPair{*winner, *other};
            }
        }
        return std::nullopt;
    }

    void set_inner(AttributeMap const & merged) {
        m_merged.add(m_next->first, AttributeValue(merged));
        ++m_next;
    }

    AttributeMap take() { return std::move(m_merged); }

  private:
    AttributeMapBase::const_iterator m_next; // of the winner
    AttributeMapBase::const_iterator m_end;
    AttributeMapBase const * m_other;
    MutableAttributeMap m_merged;
};

} // namespace

AttributeMap merged_deep(AttributeMapBase const & winner, AttributeMapBase const & other) {
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
