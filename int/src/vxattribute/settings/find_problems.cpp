#include "vxattribute/elements.h"
#include "vxattribute/error_codes.h"
#include "vxattribute/map_path.h"
#include "vxattribute/query/unknown_names_internal.h"
#include "vxattribute/setting_values_impl.h"
#include "vxattribute/settings/setting_text_internal.h"
#include "vxcore/error_composer.h"
#include "vxcore/streamers.h"
#include "vxcore/text_conversion.h"

#include <algorithm>
#include <unordered_set>

namespace vxattribute {

namespace {

constexpr std::size_t maxListed = 100; // problems in a message

/// Walks a configuration along its description. The description decides the depth of the
/// recursion, so no configuration can make it deep.
class ProblemFinder {
  public:
    void check_map(Settings const & settings, AttributeMapBase const & map, bool allowsUnknown);

    std::vector<SettingProblem> take() && noexcept { return std::move(m_problems); }

  private:
    /// Appends steps to the path while it lives.
    class Step {
      public:
        Step(ProblemFinder & finder, std::string const & step)
            : m_path(finder.m_path), m_size(m_path.size()) {
            m_path += m_path.empty() ? step : "/" + step;
        }

        Step(Step const &) = delete;
        Step & operator=(Step const &) = delete;

        ~Step() { m_path.resize(m_size); }

      private:
        std::string & m_path;
        std::size_t m_size;
    };

    void check_unknown(Settings const & settings, AttributeMapBase const & map);
    void check_absent(Setting const & setting, bool allowsUnknown);
    void check_value(Setting const & setting, AttributeValue const & value, bool allowsUnknown);
    bool check_count(Setting const & setting, unsigned int count);
    void check_element(Setting const & setting, AttributeValue const & value, unsigned int index,
                       bool allowsUnknown);
    void check_scalar(Setting const & setting, AttributeValue const & element);

    void add(vxcore::ErrorCode const & code, std::string text) {
        m_problems.push_back({m_path, std::move(text), code});
    }

    /// The value for a message.
    std::string shown(AttributeValue const & value) const {
        return m_isSecret ? "the value" : impl::short_text(value);
    }

    std::vector<SettingProblem> m_problems;
    std::string m_path;
    bool m_isSecret = false; // within the value of a secret
};

bool is_text(AttributeValue const & value) {
    return value.type() == ValueTypeId::typeString;
}

/// Calls `action.template operator()<T>()` if the elements may be Strings in the text form of `T`.
template <typename Action>
void for_text_form(Setting const & setting, Action action) {
    impl::for_element_type(setting.type, [&action]<typename T>() {
        if constexpr (impl::TextFormType<T>) {
            action.template operator()<T>();
        }
    });
}

bool has_text_form(Setting const & setting) {
    bool result = false;
    for_text_form(setting, [&result]<typename>() { result = true; });
    return result;
}

bool is_of_type(Setting const & setting, AttributeValue const & value) {
    return value.type().id() == setting.type ||
           (setting.acceptsIntegers && value.type() == ValueTypeId::typeInteger) ||
           (is_text(value) && has_text_form(setting));
}

/// Whether an element of the right type can be wrong.
bool has_element_rules(Setting const & setting, AttributeValue const & value) {
    return setting.nested || !setting.minimum.is_null() || !setting.maximum.is_null() ||
           !setting.choices.empty() || value.type().id() != setting.type;
}

bool is_in_range(Setting const & setting, AttributeValue const & number) {
    impl::NumberLimits const limits(setting);
    return number.type() == ValueTypeId::typeInteger ? limits.contain(number.get<long long>())
                                                     : limits.contain(number.get<double>());
}

bool is_in_text_form(Setting const & setting, AttributeValue const & text) {
    bool result = false;
    for_text_form(setting, [&]<typename T>() {
        T element{};
        result = impl::read_text_form(text, 0, element);
    });
    return result;
}

void ProblemFinder::check_map(Settings const & settings, AttributeMapBase const & map,
                              bool allowsUnknown) {
    unsigned int known = 0;
    for (Setting const & setting : settings.entries()) {
        Step const step(*this, path_step(setting.name.value()));
        bool const wasSecret = m_isSecret;
        m_isSecret = wasSecret || setting.isSecret;
        if (AttributeValue const * const value = impl::find_setting(setting, map)) {
            check_value(setting, *value, allowsUnknown);
        } else {
            check_absent(setting, allowsUnknown);
        }
        m_isSecret = wasSecret;
        known += map.count(setting.name);
        for (AttributeName const & alternate : setting.alternates) {
            known += map.count(alternate);
        }
    }
    if (!allowsUnknown && known != map.size()) {
        check_unknown(settings, map);
    }
}

void ProblemFinder::check_unknown(Settings const & settings, AttributeMapBase const & map) {
    std::unordered_set<AttributeName> known;
    for (Setting const & setting : settings.entries()) {
        known.insert(setting.name);
        known.insert(setting.alternates.begin(), setting.alternates.end());
    }
    for (AttributeName const & name : impl::names_outside(map, known)) {
        Step const step(*this, path_step(name.value()));
        // A stranger's configuration may have any number of names, and each comparison has a cost.
        AttributeName const * const meant =
            m_problems.size() < maxListed ? impl::near_name(name, settings) : nullptr;
        add(error::vxattribute_query_unknownName,
            meant != nullptr ? "unknown name (did you mean \"" + meant->value() + "\"?)"
                             : "unknown name");
    }
}

void ProblemFinder::check_absent(Setting const & setting, bool allowsUnknown) {
    if (setting.isRequired) {
        add(error::vxattribute_query_notFound, "missing");
    } else if (setting.nested && setting.isAlwaysChecked) {
        check_map(*setting.nested, AttributeMap(), allowsUnknown);
    }
}

void ProblemFinder::check_value(Setting const & setting, AttributeValue const & value,
                                bool allowsUnknown) {
    bool const isAny = setting.type == ValueTypeId::eId_Null;
    if (value.is_null() && !isAny) {
        add(error::vxattribute_value_type_mismatch,
            "expected " + impl::type_text(setting) + ", found null");
        return;
    }
    if (!check_count(setting, value.size()) || value.empty() || isAny) {
        return;
    }
    if (!is_of_type(setting, value)) {
        std::string found = value.type().name();
        if (!m_isSecret && !value.is_multivalue() && impl::short_text(value) != found) {
            found += " " + impl::short_text(value);
        }
        add(error::vxattribute_value_type_mismatch,
            "expected " + impl::type_text(setting) + ", found " + found);
        return;
    }
    if (!has_element_rules(setting, value)) {
        return;
    }
    // A stranger's list may be long, and each problem takes more memory than its element.
    std::size_t const enough = m_problems.size() + maxListed;
    for (unsigned int i = 0; i < value.size() && m_problems.size() < enough; ++i) {
        if (value.is_multivalue()) {
            Step const step(*this, vxcore::to_string(i));
            check_element(setting, value, i, allowsUnknown);
        } else {
            check_element(setting, value, i, allowsUnknown);
        }
    }
}

bool ProblemFinder::check_count(Setting const & setting, unsigned int count) {
    bool const isSingle = setting.minCount == 1 && setting.maxCount == 1;
    auto const expected = [&](char const * limit, unsigned int number) {
        return "expected " +
               (isSingle ? "one value" : limit + vxcore::to_string(number) + " values") +
               ", found " + (count == 0 ? "none" : vxcore::to_string(count));
    };
    if (count < setting.minCount) {
        add(error::vxattribute_query_tooFew, expected("at least ", setting.minCount));
        return false;
    }
    if (count > setting.maxCount) {
        add(error::vxattribute_query_tooMany, expected("at most ", setting.maxCount));
        return false;
    }
    return true;
}

void ProblemFinder::check_element(Setting const & setting, AttributeValue const & value,
                                  unsigned int index, bool allowsUnknown) {
    if (setting.nested) {
        check_map(*setting.nested, value.at<AttributeMap>(index),
                  setting.isGroup ? allowsUnknown : setting.nested->allows_unknown());
    } else {
        check_scalar(setting, value.subrange(index, 1));
    }
}

void ProblemFinder::check_scalar(Setting const & setting, AttributeValue const & element) {
    if (setting.type == ValueTypeId::eId_Integer || setting.type == ValueTypeId::eId_Double) {
        if (!is_in_range(setting, element)) {
            add(error::vxattribute_query_badValue,
                shown(element) + " is not " + impl::range_text(setting.minimum, setting.maximum));
        }
    } else if (setting.type == ValueTypeId::eId_String) {
        if (!setting.choices.empty() &&
            std::ranges::count(setting.choices, element.get<std::string>()) == 0) {
            add(error::vxattribute_query_badValue,
                shown(element) + " is none of " + impl::choices_text(setting));
        }
    } else if (is_text(element) && !is_in_text_form(setting, element)) {
        add(error::vxattribute_query_typeConversion,
            shown(element) + " is no " + impl::type_text(setting));
    }
}

/// At most 256 bytes of a path: a stranger chooses the names in it.
std::string shortened(std::string const & path) {
    constexpr unsigned int limit = 256;
    unsigned int const size = vxcore::utf8_cut(path, limit);
    return size < path.size() ? path.substr(0, size) + "..." : path;
}

} // namespace

std::vector<SettingProblem> Settings::find_problems(AttributeMapBase const & config) const {
    ProblemFinder finder;
    finder.check_map(*this, config, m_allowsUnknown);
    return std::move(finder).take();
}

void Settings::check(AttributeMapBase const & config) const {
    std::vector<SettingProblem> const problems = find_problems(config);
    if (problems.empty()) {
        return;
    }
    std::string lines;
    for (SettingProblem const & problem :
         std::span(problems).first(std::min(problems.size(), maxListed))) {
        lines += "\n  " + shortened(problem.path) + ": " + problem.text;
    }
    if (problems.size() > maxListed) {
        lines += "\n  and " +
                 vxcore::to_string(static_cast<unsigned long long>(problems.size() - maxListed)) +
                 " more";
    }
    vxcore::ErrorComposer("The configuration has problems:{@problems}")
        .param("problems", std::move(lines))
        .param("name", problems.front().path)
        .throw_error(error::vxattribute_query_settings,
                     VXCORE_LOCATION("vxattribute::Settings::check()"));
}

} // namespace vxattribute
