#include "vxattribute/difference.h"

#include "vxattribute/difference/exact_order_internal.h"
#include "vxattribute/difference/list_edits_internal.h"
#include "vxattribute/map/nested_maps_internal.h"
#include "vxattribute/map_path.h"
#include "vxattribute/sorted_by_name.h"
#include "vxcore/text_conversion.h"

#include <utility>
#include <variant>

namespace vxattribute {

namespace {

constexpr long long maxSteps = 1ll << 27;

/// Lists of maps that may be open while another one is aligned, which looks at all that is nested
/// in it.
constexpr int maxAlignedDepth = 8;

/// Two maps that are being compared, by two sorted lists of their names.
struct OpenMaps {
    std::vector<AttributeMapBase::const_iterator> a;
    std::vector<AttributeMapBase::const_iterator> b;
    std::size_t nextOfA = 0;
    std::size_t nextOfB = 0;
};

/// Two lists that are being compared.
struct OpenLists {
    AttributeValue const & a;
    AttributeValue const & b;
    std::vector<impl::ListEdit> edits;
    std::size_t next = 0;
};

/// Maps that share a holder are identical.
bool share_holder(AttributeMap const & a, AttributeMap const & b) {
    return a.empty() ? b.empty() : !b.empty() && &*a.begin() == &*b.begin();
}

/// The walk through two values. What is open is in a list and not on the stack: input decides how
/// deep maps nest.
class Comparison {
  public:
    explicit Comparison(std::function<void(Difference const &)> const & take) : m_take(take) {}

    void run(AttributeValue const & a, AttributeValue const & b) {
        compare(a, b);
        while (!m_open.empty()) {
            Open & open = m_open.back();
            m_difference.old_path.resize(open.oldPathSize);
            m_difference.path.resize(open.pathSize);
            if (!std::visit([this](auto & both) { return next(both); }, open.both)) {
                m_openLists -= std::holds_alternative<OpenLists>(open.both);
                m_open.pop_back();
            }
        }
    }

  private:
    struct Open {
        template <typename Both>
        Open(Both opened, Difference const & at)
            : both(std::move(opened)), oldPathSize(at.old_path.size()), pathSize(at.path.size()) {}

        std::variant<OpenMaps, OpenLists> both;
        std::size_t oldPathSize;
        std::size_t pathSize;
    };

    /// Reports two values that differ, or opens them. The paths are those of the values.
    void compare(AttributeValue const & a, AttributeValue const & b) {
        AttributeMap const * const mapOfA = impl::scalar_map(a);
        AttributeMap const * const mapOfB = impl::scalar_map(b);
        if (mapOfA != nullptr && mapOfB != nullptr) {
            open_maps(*mapOfA, *mapOfB);
        } else if (a.type() == b.type() && a.is_multivalue() && b.is_multivalue()) {
            open_lists(a, b);
        } else if (impl::exact_order(a, b) != 0) {
            report(a, b);
        }
    }

    void open_maps(AttributeMap const & a, AttributeMap const & b) {
        if (!share_holder(a, b)) {
            m_open.emplace_back(OpenMaps{sorted_by_name(a), sorted_by_name(b)}, m_difference);
        }
    }

    void open_lists(AttributeValue const & a, AttributeValue const & b) {
        long long none = 0;
        bool const isAligned = !impl::holds_maps(a) || m_openLists < maxAlignedDepth;
        m_open.emplace_back(OpenLists{a, b, impl::list_edits(a, b, isAligned ? m_stepsLeft : none)},
                            m_difference);
        ++m_openLists;
    }

    /// Compares the values of the next name. False when there is none. It may open maps, so that
    /// `maps` is no longer valid.
    bool next(OpenMaps & maps) {
        auto const * const x = maps.nextOfA != maps.a.size() ? &*maps.a[maps.nextOfA] : nullptr;
        auto const * const y = maps.nextOfB != maps.b.size() ? &*maps.b[maps.nextOfB] : nullptr;
        if (x == nullptr && y == nullptr) {
            return false;
        }
        int const order = x == nullptr   ? 1
                          : y == nullptr ? -1
                                         : x->first.value().compare(y->first.value());
        std::string const step = path_step((order <= 0 ? x : y)->first.value());
        add_step(m_difference.old_path, step);
        add_step(m_difference.path, step);
        maps.nextOfA += order <= 0;
        maps.nextOfB += order >= 0;
        if (order == 0) {
            compare(x->second, y->second);
        } else if (order < 0) {
            report(x->second, std::nullopt);
        } else {
            report(std::nullopt, y->second);
        }
        return true;
    }

    /// Reports the next edit or opens its maps, as above.
    bool next(OpenLists & lists) {
        if (lists.next == lists.edits.size()) {
            return false;
        }
        impl::ListEdit const & edit = lists.edits[lists.next++];
        add_step(m_difference.old_path, vxcore::to_string(edit.a));
        add_step(m_difference.path, vxcore::to_string(edit.b));
        if (edit.isInA && edit.isInB && impl::holds_maps(lists.a)) {
            open_maps(impl::maps_of(lists.a)[edit.a], impl::maps_of(lists.b)[edit.b]);
            return true;
        }
        auto const element = [](AttributeValue const & list, unsigned int index, bool isIn) {
            return isIn ? std::optional(list.subrange(index, 1)) : std::nullopt;
        };
        report(element(lists.a, edit.a, edit.isInA), element(lists.b, edit.b, edit.isInB));
        return true;
    }

    /// The first step, which is in the outermost maps or lists, has no slash before it. The path
    /// being empty would not tell: names may be empty too.
    void add_step(std::string & path, std::string_view step) const {
        if (m_open.size() > 1) {
            path += '/';
        }
        path += step;
    }

    void report(std::optional<AttributeValue> a, std::optional<AttributeValue> b) {
        m_difference.old_value = std::move(a);
        m_difference.new_value = std::move(b);
        m_take(m_difference);
    }

    std::function<void(Difference const &)> const & m_take;
    std::vector<Open> m_open;
    int m_openLists = 0;
    Difference m_difference; // its paths are those of what is being compared
    long long m_stepsLeft = maxSteps;
};

} // namespace

std::vector<Difference> find_differences(AttributeValue const & before,
                                         AttributeValue const & after) {
    std::vector<Difference> differences;
    visit_differences(before, after,
                      [&](Difference const & difference) { differences.push_back(difference); });
    return differences;
}

void visit_differences(AttributeValue const & before, AttributeValue const & after,
                       std::function<void(Difference const &)> const & take) {
    Comparison(take).run(before, after);
}

bool is_identical(AttributeValue const & a, AttributeValue const & b) {
    return impl::exact_order(a, b) == 0;
}

} // namespace vxattribute
