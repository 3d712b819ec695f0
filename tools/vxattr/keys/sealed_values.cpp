#include "vxattr/keys/sealed_values.h"

#include "vxattr/commands/path_step_scope.h"
#include "vxattribute/elements.h"
#include "vxattribute/make_value.h"
#include "vxattribute/map_path.h"
#include "vxattribute/sorted_by_name.h"
#include "vxcore/text_conversion.h"

#include <optional>

namespace vxattr {

using namespace vxattribute;

namespace {

class Replacement {
  public:
    /// @param path  Of the value passed to in_value first.
    Replacement(ReplaceSealed const & replace, std::string path)
        : m_replace(replace), m_path(std::move(path)) {}

    unsigned long long count() const noexcept { return m_count; }

    /// The recursion is bounded: readers limit how deep maps from files nest.
    AttributeValue in_value(AttributeValue const & value) {
        if (value.type() == ValueTypeId::typeSecured) {
            m_count += value.size();
            return in_elements<SecuredValue>(
                value, [this](SecuredValue const & sealed) { return m_replace(m_path, sealed); });
        }
        if (value.type() != ValueTypeId::typeAttributeMap) {
            return value;
        }
        unsigned long long const before = m_count;
        AttributeValue result = in_elements<AttributeMap>(
            value, [this](AttributeMap const & map) { return in_map(map); });
        return m_count == before ? value : result;
    }

  private:
    AttributeMap in_map(AttributeMap const & map) {
        MutableAttributeMap result(map);
        unsigned long long const before = m_count;
        for (auto const & element : sorted_by_name(map)) {
            unsigned long long const beforeElement = m_count;
            PathStepScope const step(m_path, path_step(element->first.value()));
            AttributeValue value = in_value(element->second);
            if (m_count != beforeElement) {
                result.add(element->first, std::move(value));
            }
        }
        return m_count == before ? map : AttributeMap(std::move(result));
    }

    template <typename T, typename Replace>
    AttributeValue in_elements(AttributeValue const & value, Replace const & replace) {
        std::vector<T> replaced;
        for (T const & element : elements<T>(value)) {
            std::optional<PathStepScope> index; // one element needs no index
            if (value.size() != 1) {
                index.emplace(m_path,
                              vxcore::to_string(static_cast<unsigned long long>(replaced.size())));
            }
            replaced.push_back(replace(element));
        }
        return make_list(std::span<T const>(replaced));
    }

    ReplaceSealed const & m_replace;
    std::string m_path; // of the current value
    unsigned long long m_count = 0;
};

} // namespace

AttributeValue replace_sealed(AttributeValue const & value, std::string const & path,
                              ReplaceSealed const & replace, unsigned long long & count) {
    Replacement replacement(replace, path);
    AttributeValue result = replacement.in_value(value);
    count += replacement.count();
    return result;
}

} // namespace vxattr
