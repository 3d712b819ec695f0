#pragma once

#include "vxattribute/bind_codecs_impl.h"
#include "vxattribute/make_value.h"
#include "vxattribute/multi_value_writer.h"

#include <array>
#include <tuple>

/// The fields of bindings. Include bind.h.
namespace vxattribute::impl {

/// Raises what `Settings::check` raises for a map that a binding could not read.
[[noreturn]] VXATTRIBUTE_API void throw_problems(Settings const & settings,
                                                 AttributeMapBase const & map);

/// What `settings` does not describe of the map, in the maps on the way of paths too.
VXATTRIBUTE_API AttributeMap undescribed(AttributeMapBase const & map, Settings const & settings);

/// Replaces the defaults of the settings by the values of a map, at every depth.
VXATTRIBUTE_API void adopt_defaults(Settings & settings, AttributeMapBase const & defaults);

/// Sets the value of a name in the map under the parents, each in the map of the one before it.
/// Absent maps are added.
///
/// @pre  The present values under the parents are single maps.
VXATTRIBUTE_API void set_nested(AttributeMap & map, std::span<AttributeName const> parents,
                                AttributeName const & name, AttributeValue value);

/// Finds the map under the parents, in the same way. `map` becomes null when one is absent. Returns
/// false when a value is not one map.
VXATTRIBUTE_API bool descend(AttributeMapBase const *& map, std::span<AttributeName const> parents);

/// The names of a path of `field`; at least one.
VXATTRIBUTE_API std::vector<AttributeName> names_of(std::string_view path);

/// The type that a member has elements of, and how many it may have.
template <typename Member>
struct MemberTraits {
    using Element = Member;
    static constexpr bool isList = false;
    static constexpr bool isOptional = false;
};

template <typename T>
struct MemberTraits<std::vector<T>> {
    using Element = T;
    static constexpr bool isList = true;
    static constexpr bool isOptional = false;
};

template <typename T>
struct MemberTraits<std::optional<T>> {
    using Element = typename MemberTraits<T>::Element;
    static constexpr bool isList = MemberTraits<T>::isList;
    static constexpr bool isOptional = true;
};

template <typename Member>
using MemberElement = typename MemberTraits<Member>::Element;

/// A class that is no element type, so that it needs a binding to be one.
template <typename T>
concept IsStruct = std::is_class_v<T> && !is_element_type<T> && !std::is_same_v<T, AttributeValue>;

/// The codec of types that need no table and no binding.
template <typename T>
auto default_codec() {
    if constexpr (std::is_same_v<T, AttributeValue>) {
        return AnyCodec();
    } else if constexpr (std::is_same_v<T, std::string>) {
        return StringCodec();
    } else if constexpr (std::is_same_v<T, float> || std::is_same_v<T, double>) {
        return FloatCodec<T>();
    } else if constexpr (std::integral<T> && !std::is_same_v<T, bool> && Convertible<T>) {
        return IntegerCodec<T>();
    } else {
        static_assert(!std::is_enum_v<T>, "a member of an enumeration needs a table of names: "
                                          "field(name, &Struct::member, {{\"text\", constant}})");
        static_assert(is_element_type<T> || std::is_enum_v<T>,
                      "a member of this type needs the binding of its struct: "
                      "field(name, &Struct::member, bind<Type>(...))");
        return ElementCodec<T>();
    }
}

/// One field of a binding.
template <typename Struct, typename Member, typename Codec>
class BoundField {
  public:
    /// Adds the description to `settings`.
    ///
    /// @param defaults  Holds the values of members that were never read.
    BoundField(std::string_view path, Setting setting, Member Struct::*member, Codec codec,
               Settings & settings, Struct const & defaults)
        : m_member(member), m_codec(std::move(codec)), m_parents(names_of(path)) {
        m_codec.adopt(setting);
        m_setting = setting;
        m_setting.name = std::move(m_parents.back());
        m_parents.pop_back();
        if (!setting.isRequired && has_value(defaults)) {
            if constexpr (isStruct) {
                adopt_defaults(*setting.nested, m_codec.write(defaults.*m_member));
            } else {
                setting.defaultValue = value_of(defaults.*m_member);
            }
        }
        setting.isAlwaysChecked = isStruct;
        settings.add(at_path(path, std::move(setting)));
    }

    /// Reads the field of `map`. Returns false if `Settings::find_problems` reports something.
    ///
    /// @param found  Counts the fields found in `map` itself.
    bool read(AttributeMapBase const & map, Struct & object, unsigned int & found) const {
        AttributeMapBase const * inner = &map;
        if (!m_parents.empty() && !descend(inner, m_parents)) [[unlikely]] {
            return false;
        }
        AttributeValue const * const value =
            inner != nullptr ? find_setting(m_setting, *inner) : nullptr;
        if (value != nullptr) {
            found += m_parents.empty() ? 1U : 0U;
            return read_member(*value, object.*m_member);
        }
        if constexpr (isStruct) {
            return !m_setting.isRequired && m_codec.read_absent(object.*m_member);
        }
        return !m_setting.isRequired;
    }

    /// The field of a map. Without a name and a value for an optional member without a value, and
    /// for a field in a nested map.
    Attribute attribute(Struct const & object) const {
        return m_parents.empty() && has_value(object)
                   ? Attribute(m_setting.name, value_of(object.*m_member))
                   : Attribute();
    }

    /// Adds a field in a nested map to `map`, and leaves any other one out.
    void add_nested(Struct const & object, AttributeMap & map) const {
        if (!m_parents.empty() && has_value(object)) {
            set_nested(map, m_parents, m_setting.name, value_of(object.*m_member));
        }
    }

  private:
    using Traits = MemberTraits<Member>;
    using Listed = typename Traits::Element;

    static constexpr bool isStruct =
        std::is_same_v<Member, Listed> && std::is_same_v<Codec, StructCodec<Listed>>;

    bool read_member(AttributeValue const & value, Listed & target) const {
        if constexpr (std::is_same_v<Codec, AnyCodec>) {
            target = value;
            return true;
        } else {
            return value.size() == 1 && m_codec.read(value, 0, target);
        }
    }

    bool read_member(AttributeValue const & value, std::vector<Listed> & target) const {
        if (value.is_null() || value.size() < m_setting.minCount ||
            value.size() > m_setting.maxCount) {
            return false;
        }
        std::vector<Listed> elements;
        elements.reserve(value.size());
        for (unsigned int i = 0; i < value.size(); ++i) {
            Listed element{};
            if (!m_codec.read(value, i, element)) {
                return false;
            }
            elements.push_back(std::move(element));
        }
        target = std::move(elements);
        return true;
    }

    template <typename T>
    bool read_member(AttributeValue const & value, std::optional<T> & target) const {
        return read_member(value, target.emplace());
    }

    bool has_value(Struct const & object) const noexcept {
        if constexpr (Traits::isOptional) {
            return (object.*m_member).has_value();
        } else {
            return true;
        }
    }

    AttributeValue value_of(Listed const & member) const {
        if constexpr (std::is_same_v<Codec, AnyCodec>) {
            return member;
        } else {
            return m_codec.write(member);
        }
    }

    AttributeValue value_of(std::vector<Listed> const & member) const {
        using Element = typename Codec::Element;
        if constexpr (std::is_same_v<Element, Listed> && !std::is_same_v<Element, bool>) {
            return make_list(std::span<Element const>(member));
        } else {
            AttributeValue list(ValueTypeTraits<Element>::type());
            auto writer = list.template multivalue_writer<Element>();
            writer.reserve(static_cast<unsigned int>(member.size()));
            for (auto const & element : member) {
                writer.push_back(m_codec.write(element));
            }
            return list;
        }
    }

    template <typename T>
    AttributeValue value_of(std::optional<T> const & member) const {
        return value_of(*member);
    }

    Member Struct::*m_member;
    Codec m_codec;
    std::vector<AttributeName> m_parents; // the names of the maps around the field
    Setting m_setting;
};

/// The fields of a binding, whatever they are.
template <typename Struct>
class IBoundFields {
  public:
    virtual ~IBoundFields() = default;

    /// Reads all fields, up to the first that has a problem.
    virtual bool read(AttributeMapBase const & map, Struct & object,
                      unsigned int & found) const = 0;

    virtual AttributeMap write(Struct const & object) const = 0;
};

template <typename Struct, typename... Fields>
class BoundFields final : public IBoundFields<Struct> {
  public:
    explicit BoundFields(std::tuple<Fields...> fields) : m_fields(std::move(fields)) {}

    bool read(AttributeMapBase const & map, Struct & object, unsigned int & found) const override {
        return std::apply(
            [&](Fields const &... field) { return (field.read(map, object, found) && ...); },
            m_fields);
    }

    AttributeMap write(Struct const & object) const override {
        return std::apply(
            [&object](Fields const &... field) {
                std::array<Attribute, sizeof...(Fields)> attributes = {field.attribute(object)...};
                auto const end =
                    std::partition(attributes.begin(), attributes.end(), [](Attribute const & a) {
                        return !a.name().empty() || !a.value().is_null();
                    });
                AttributeMap map = make_map(std::span<Attribute const>(attributes.begin(), end));
                (field.add_nested(object, map), ...);
                return map;
            },
            m_fields);
    }

  private:
    std::tuple<Fields...> m_fields;
};

} // namespace vxattribute::impl
