#pragma once

#include "vxattribute/attribute_map.h"
#include "vxcore/error_code.h"

#include <climits>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// A configuration described as data: which settings there are, and what each may hold. The
/// description finds all that is wrong with a configuration at once, and prints itself for people.
///
///     static Settings const settings = {
///         setting<std::string>("host", "Where the server listens").required(),
///         setting<long long>("port", "The port").range(1, 65535).default_value(8080),
///         setting<Number>("limits/rate", "Requests a second").at_least(0),
///         setting<std::string>("log", "How much to log").one_of({"all", "errors"}),
///     };
///     settings.check(config);                     // raises one error that lists all problems
///     std::cout << settings.describe();           // a table, for --help
///
/// To read a configuration into a struct, see bind.h, whose bindings make their own description.
namespace vxattribute {

struct Setting;

/// One thing that is wrong with a configuration.
struct SettingProblem {
    /// Where: a path as of `find_path`, such as "limits/rate". An element of a list that has more
    /// than one is "ports/1", from 0.
    std::string path;
    /// What: one line, such as "missing" or "70000 is not from 1 to 65535". Never the value of a
    /// secret.
    std::string text;
    /// The failure as a code: one of error.vxattribute.query, or value.type.mismatch.
    vxcore::ErrorCode code;
};

/// A list of described settings, in the order in which they are shown and checked.
///
/// Cost. A copy is one atomic count. A change of a list that is shared copies it first.
///
/// Threads. As AttributeMap: separate objects may be used from separate threads even when they
/// share their list. One object: many readers or one writer.
///
/// Errors. All functions raise std::bad_alloc. When a change raises, the list is as it was.
class VXATTRIBUTE_API Settings {
  public:
    /// Describes nothing, so that every name is unknown.
    Settings() noexcept = default;

    /// Describes these settings, as if each was added.
    Settings(std::initializer_list<Setting> settings);

    /// Adds a setting. Paths through the same map, such as "limits/rate" and "limits/burst", may be
    /// mixed with other settings, but not with a description of that map itself.
    ///
    /// @return This list.
    /// @raises std::invalid_argument: one of its names is described already.
    Settings & add(Setting setting) VXCORE_LIFETIMEBOUND;

    /// The settings in the order in which they were added.
    ///
    /// @keeps  Until the list is changed or destroyed.
    std::span<Setting const> entries() const noexcept VXCORE_LIFETIMEBOUND;

    /// Sets whether names that are not described are accepted. They are problems otherwise. This
    /// covers the maps on the way of paths; nested settings have a choice of their own.
    Settings & allow_unknown(bool isAllowed = true) noexcept VXCORE_LIFETIMEBOUND {
        m_allowsUnknown = isAllowed;
        return *this;
    }

    bool allows_unknown() const noexcept { return m_allowsUnknown; }

    /// All problems of a configuration; none if it is right. Those of described settings are in
    /// their order. After them are the unknown names in the order of their bytes, with a suggestion
    /// if a described name is near. Of a long list, only the first 100 problems are found.
    ///
    /// @cost  One lookup for each described name.
    std::vector<SettingProblem> find_problems(AttributeMapBase const & config) const;

    /// Raises if the configuration has problems. The message lists the first 100 of them, each on
    /// a line with its path. `Query::bad_attribute_name` of the error is the path of the first.
    ///
    /// @raises error.vxattribute.query.settings
    void check(AttributeMapBase const & config) const;

    /// The configuration with the defaults of absent settings added, at every depth. What was found
    /// under an alternate name is under the first name.
    ///
    /// @pre  `find_problems(config)` is empty. Values that are not as described are left alone.
    AttributeMap with_defaults(AttributeMapBase const & config) const;

    /// The names of all secrets, for `redacted` (redaction.h), which looks for names at every
    /// depth.
    std::vector<AttributeName> secret_names() const;

    /// A table of the settings: path, type, default and description, with a heading. Lines end with
    /// "\n" and are at most `width` bytes long, if the first three columns leave at least 20 for
    /// the description. The defaults of secrets are not shown.
    std::string describe(unsigned int width = 80) const;

  private:
    std::shared_ptr<std::vector<Setting>> m_entries; // null: none
    bool m_allowsUnknown = false;
};

/// What one setting may hold. Plain data: most programs build it with `setting<T>`, below.
///
/// Where no elements are allowed, they may be of every type, because `[]` in JSON is an empty
/// String. Null fits only the settings of any type. UUID, URI and times may also be Strings in
/// their text form, since JSON has no other form for them; `ConvertableValue` reads both.
struct Setting {
    /// The largest `maxCount`.
    static constexpr unsigned int unlimited = UINT_MAX;

    AttributeName name = {};
    /// Names tried after `name`, such as those of earlier versions. The first one present counts.
    std::vector<AttributeName> alternates = {};
    std::string description = {};
    /// The type of the elements. Null: any type, null included.
    ValueTypeId::EId type = ValueTypeId::eId_Null;
    /// With Double as the type: Integers are accepted too, since people write 30 as well as 0.5.
    bool acceptsIntegers = false;
    /// Whether absence is a problem.
    bool isRequired = false;
    /// Whether the value is kept out of messages. Nested settings of a secret are secret.
    bool isSecret = false;
    /// How many elements: 1 and 1 for a single value.
    unsigned int minCount = 1;
    unsigned int maxCount = 1;
    /// The limits of numbers, each an Integer or a Double; null: none. Both are allowed values. A
    /// NaN is out of every range.
    AttributeValue minimum = {};
    AttributeValue maximum = {};
    /// The allowed texts of Strings. Empty: all.
    std::vector<std::string> choices = {};
    /// What `with_defaults` adds; null: nothing. It is not checked.
    AttributeValue defaultValue = {};
    /// The settings in the map, or in each map of a list.
    std::optional<Settings> nested = {};
    /// Whether an absent map is treated like an empty one, so that required settings in it are
    /// missing. Otherwise an absent map is no problem.
    bool isAlwaysChecked = false;
    /// Whether the map was made for the steps of paths, and is not described itself.
    bool isGroup = false;
};

/// In place of an element type: a Double or an Integer.
struct Number {};

namespace impl {

/// The setting at a path: itself, or a nested map that holds it, and so on.
VXATTRIBUTE_API Setting at_path(std::string_view path, Setting setting);

/// The parts of a description that `setting` and `field` have in common. Each returns this object.
template <typename Self>
class SettingBuilder {
  public:
    /// Absence is a problem.
    Self & required() noexcept {
        m_setting.isRequired = true;
        return self();
    }

    /// The range of a number, or of each in a list. The limits are allowed values.
    Self & range(AttributeValue minimum, AttributeValue maximum) noexcept {
        return at_least(std::move(minimum)).at_most(std::move(maximum));
    }

    Self & at_least(AttributeValue minimum) noexcept {
        m_setting.minimum = std::move(minimum);
        return self();
    }

    Self & at_most(AttributeValue maximum) noexcept {
        m_setting.maximum = std::move(maximum);
        return self();
    }

    /// The texts that a String may be.
    Self & one_of(std::vector<std::string> choices) noexcept {
        m_setting.choices = std::move(choices);
        return self();
    }

    /// The value never appears in a message or table.
    Self & secret() noexcept {
        m_setting.isSecret = true;
        return self();
    }

    /// Another name, in the same map as the last step of the path. It is tried when those before it
    /// are absent.
    Self & alternate(AttributeName name) {
        m_setting.alternates.push_back(std::move(name));
        return self();
    }

  protected:
    SettingBuilder(std::string_view path, std::string_view description)
        : m_path(path), m_setting{.description = std::string(description)} {}

    Self & self() noexcept { return static_cast<Self &>(*this); }

    std::string m_path;
    Setting m_setting; // its name is set from the path
};

} // namespace impl

/// A setting in the making: what `setting` returns. It becomes a Setting where one is expected.
class SettingDraft : public impl::SettingBuilder<SettingDraft> {
  public:
    SettingDraft(std::string_view path, std::string_view description, Setting setting)
        : SettingBuilder(path, description) {
        setting.description = std::move(m_setting.description);
        m_setting = std::move(setting);
    }

    /// The value used when the setting is absent.
    SettingDraft & default_value(AttributeValue value) noexcept {
        m_setting.defaultValue = std::move(value);
        return *this;
    }

    /// The setting is a list with so many elements. A single element is a list of one.
    SettingDraft & list(unsigned int minCount = 0,
                        unsigned int maxCount = Setting::unlimited) noexcept {
        m_setting.minCount = minCount;
        m_setting.maxCount = maxCount;
        return *this;
    }

    operator Setting() const { return impl::at_path(m_path, m_setting); }
};

/// Describes a setting of one element of type `T`: an element type, Number, or AttributeValue for a
/// value of any type and count.
///
/// @param path         A name, or names with slashes between them for nested maps, as map_path.h
///                     says; one slash before them is ignored.
/// @param description  For people; may be empty.
template <typename T>
SettingDraft setting(std::string_view path, std::string_view description = {}) {
    static_assert(impl::is_element_type<T> || std::is_same_v<T, Number> ||
                      std::is_same_v<T, AttributeValue>,
                  "setting<T> takes an element type such as long long or std::string, Number for "
                  "Integer or Double, or AttributeValue for any type");
    Setting result;
    if constexpr (std::is_same_v<T, Number>) {
        result.type = ValueTypeId::eId_Double;
        result.acceptsIntegers = true;
    } else if constexpr (std::is_same_v<T, AttributeValue>) {
        result.minCount = 0;
        result.maxCount = Setting::unlimited;
    } else {
        result.type = impl::element_type_row<T>.id;
    }
    return SettingDraft(path, description, std::move(result));
}

/// Describes a nested map, or a list of them, by its own settings.
inline SettingDraft setting(std::string_view path, Settings nested,
                            std::string_view description = {}) {
    return SettingDraft(path, description,
                        {.type = ValueTypeId::eId_AttributeMap, .nested = std::move(nested)});
}

} // namespace vxattribute
