#include "vxattr/commands/difference.h"

#include "vxattr/commands/path_step_scope.h"
#include "vxattribute/elements.h"
#include "vxattribute/map_path.h"
#include "vxattribute/sorted_by_name.h"
#include "vxcore/text_conversion.h"

#include <algorithm>
#include <bit>
#include <optional>

namespace vxattr {

using namespace vxattribute;

namespace {

bool is_same_scalar(AttributeValue const & a, AttributeValue const & b) {
    if (a.type() != ValueTypeId::typeDouble || b.type() != ValueTypeId::typeDouble) {
        return a == b;
    }
    return std::ranges::equal(elements<double>(a), elements<double>(b), [](double x, double y) {
        return std::bit_cast<unsigned long long>(x) == std::bit_cast<unsigned long long>(y);
    });
}

class Comparison {
  public:
    explicit Comparison(TakeDifference const & take) : m_take(take) {}

    void compare(AttributeValue const & a, AttributeValue const & b) {
        bool const areMaps = a.type() == ValueTypeId::typeAttributeMap && a.type() == b.type();
        if (!areMaps || a.size() != b.size()) {
            if (!is_same_scalar(a, b)) {
                report(&a, &b);
            }
            return;
        }
        AttributeMap const * other = b.begin<AttributeMap>();
        for (unsigned int i = 0; i != a.size(); ++i) {
            std::optional<PathStepScope> index;
            if (a.size() != 1) {
                index.emplace(m_path, vxcore::to_string(i));
            }
            compare_maps(a.at<AttributeMap>(i), other[i]);
        }
    }

    bool is_same() const noexcept { return m_isSame; }

  private:
    /// Merges the two sorted lists of names. The recursion is bounded: readers limit how deep maps
    /// from files nest.
    void compare_maps(AttributeMap const & a, AttributeMap const & b) {
        auto const left = sorted_by_name(a);
        auto const right = sorted_by_name(b);
        auto l = left.begin();
        auto r = right.begin();
        while (l != left.end() || r != right.end()) {
            int const order = l == left.end()    ? 1
                              : r == right.end() ? -1
                                                 : (*l)->first.value().compare((*r)->first.value());
            PathStepScope const step(
                m_path, path_step(order <= 0 ? (*l)->first.value() : (*r)->first.value()));
            if (order == 0) {
                compare((*l)->second, (*r)->second);
            } else {
                report(order < 0 ? &(*l)->second : nullptr, order < 0 ? nullptr : &(*r)->second);
            }
            l += order <= 0;
            r += order >= 0;
        }
    }

    void report(AttributeValue const * a, AttributeValue const * b) {
        m_isSame = false;
        m_take(m_path, a, b);
    }

    TakeDifference const & m_take;
    std::string m_path; // of the values being compared
    bool m_isSame = true;
};

} // namespace

bool find_differences(AttributeValue const & a, AttributeValue const & b,
                      TakeDifference const & take) {
    Comparison comparison(take);
    comparison.compare(a, b);
    return comparison.is_same();
}

} // namespace vxattr
