#pragma once

#include "vxattribute/bind_impl.h"
#include "vxattribute/deep_merge.h"

/// Structs as maps: one description of the fields reads a struct from a map, writes it as a map,
/// and describes the map to people.
///
///     struct Server {
///         std::string host;
///         unsigned short port = 8080;
///         std::vector<std::string> paths = {"/"};
///         std::optional<double> timeout;
///     };
///
///     static Binding<Server> const binding = bind<Server>(
///         field("host", &Server::host, "Where the server listens").required(),
///         field("port", &Server::port, "The port").at_least(1),
///         field("paths", &Server::paths, "What it serves").count(1, 4),
///         field("limits/timeout", &Server::timeout, "In seconds"));
///
///     Server const server = binding.read(config);  // or one error that lists all problems
///     AttributeMap const copy = binding.write(server);
///     std::cout << binding.settings().describe();  // with the defaults above
///
/// What members may be, and what they are in the map:
///
/// - `bool`, `std::string`, UUID, times and all other element types: one element.
/// - Any integer: an Integer that fits.
/// - `double`, `float`: a Double. An Integer is read too.
/// - An enumeration: a String, from its table of names.
/// - A struct with a Binding: a map. An absent one is read like an empty one.
/// - `AttributeMap`: a map. `AttributeValue`: any value.
/// - `std::vector` of these: a list. A single element is a list of one.
/// - `std::optional` of all these: the same, or absent.
///
/// A field that is absent leaves its member as the initializers of the struct made it. Those are
/// the defaults that the description shows, unless the field is required. UUID, URI and times are
/// also read from Strings in their text form, as JSON has them.
namespace vxattribute {

/// The names of the constants of an enumeration, in the order of their description. The first name
/// of a constant is the one that is written.
///
///     static EnumNames<Level> const levels = {{"low", Level::low}, {"high", Level::high}};
template <typename Enum>
class EnumNames {
  public:
    using Entry = std::pair<std::string, Enum>;

    EnumNames(std::initializer_list<Entry> entries) : m_entries(entries) {}

    std::vector<Entry> const & entries() const noexcept VXCORE_LIFETIMEBOUND { return m_entries; }

  private:
    std::vector<Entry> m_entries;
};

/// A field in the making: what `field` returns and `bind` takes. Its functions, besides `count`,
/// are those of impl::SettingBuilder: `required`, `range`, `at_least`, `at_most`, `one_of`,
/// `secret`, `alternate`.
template <typename Struct, typename Member, typename Codec>
class Field : public impl::SettingBuilder<Field<Struct, Member, Codec>> {
  public:
    Field(std::string_view path, Member Struct::*member, Codec codec, std::string_view description)
        : impl::SettingBuilder<Field>(path, description), m_member(member),
          m_codec(std::move(codec)) {
        static_assert(!(isList && std::is_same_v<Codec, impl::AnyCodec>),
                      "an AttributeValue is a list already: use it in place of the vector");
        if constexpr (isList) {
            count(0, Setting::unlimited);
        }
    }

    /// How many elements a list must have.
    Field & count(unsigned int minimum, unsigned int maximum) noexcept
        requires(impl::MemberTraits<Member>::isList) {
        this->m_setting.minCount = minimum;
        this->m_setting.maxCount = maximum;
        return *this;
    }

    /// For `bind`: the field with its description added to `settings`.
    impl::BoundField<Struct, Member, Codec> bound(Settings & settings,
                                                  Struct const & defaults) const {
        return {this->m_path, this->m_setting, m_member, m_codec, settings, defaults};
    }

  private:
    static constexpr bool isList = impl::MemberTraits<Member>::isList;

    Member Struct::*m_member;
    Codec m_codec;
};

/// A field of a struct, for `bind`.
///
/// @param path         A name, or names with slashes between them for nested maps: "limits/rate".
/// @param description  For people; may be empty.
template <typename Struct, typename Member>
auto field(std::string_view path, Member Struct::*member, std::string_view description = {}) {
    return Field(path, member, impl::default_codec<impl::MemberElement<Member>>(), description);
}

/// The same for a member of an enumeration, which needs the names of its constants.
///
///     field("level", &Log::level, {{"low", Level::low}, {"high", Level::high}}, "How much")
template <typename Struct, typename Member>
requires std::is_enum_v<impl::MemberElement<Member>>

auto field(std::string_view path, Member Struct::*member,
           EnumNames<impl::MemberElement<Member>> names, std::string_view description = {}) {
    return Field(path, member, impl::EnumCodec(std::move(names)), description);
}

/// The same for a member that is a struct, which needs a binding of its own.
///
///     field("limits", &Server::limits, limits_binding(), "How much it takes")
template <typename Struct, typename Member>
requires impl::IsStruct<impl::MemberElement<Member>>

auto field(std::string_view path, Member Struct::*member,
           Binding<impl::MemberElement<Member>> const & binding,
           std::string_view description = {}) {
    return Field(path, member, impl::StructCodec(binding), description);
}

/// Reads structs from maps and writes them as maps. Made by `bind`.
///
/// Cost. Names are interned when the binding is made, and a copy of it is one atomic count. Reading
/// is one lookup a field and copies of the values. Writing makes each value and one map. A map with
/// unknown names or with fields in nested maps by path is also searched for problems; so is one
/// that has problems, which are then put into words.
///
/// Threads. A binding that is not being changed may be used from any number of threads.
///
/// Errors. All functions raise std::bad_alloc. What a map lacks or has wrong is reported together
/// in one error, as by `Settings::check`.
template <typename Struct>
class Binding {
  public:
    /// The struct that the map describes. Members of absent fields are as its initializers make
    /// them.
    ///
    /// @raises error.vxattribute.query.settings: with all problems of the map.
    Struct read(AttributeMapBase const & map) const {
        Struct object = Struct();
        if (!fill(map, object)) {
            impl::throw_problems(m_settings, map);
        }
        return object;
    }

    /// The map of a struct: all fields but optional members without a value. Rules such as `range`
    /// are not checked.
    ///
    /// @raises error.vxattribute.query.badValue: a constant of an enumeration has no name, or an
    ///         integer is beyond 2^63 - 1.
    AttributeMap write(Struct const & object) const {
        AttributeMap map = m_fields->write(object);
        if constexpr (canKeepUnknown) {
            if (m_rest != nullptr) {
                return merged_deep(map, object.*m_rest);
            }
        }
        return map;
    }

    /// The description of the map.
    ///
    /// @keeps  Until the binding is changed or destroyed.
    Settings const & settings() const noexcept VXCORE_LIFETIMEBOUND { return m_settings; }

    /// Ignores names that no field has, which otherwise are problems. The bindings of nested
    /// structs have a choice of their own. Returns this binding, as the next one.
    Binding & allow_unknown() noexcept VXCORE_LIFETIMEBOUND {
        m_settings.allow_unknown();
        return *this;
    }

    /// Keeps what no field reads in that member when reading, and writes it again when writing. A
    /// field has priority over a kept value of its name.
    Binding & keep_unknown(AttributeMap Struct::*member) noexcept VXCORE_LIFETIMEBOUND {
        m_settings.allow_unknown();
        m_rest = member;
        return *this;
    }

    /// For `bind`.
    Binding(std::shared_ptr<impl::IBoundFields<Struct> const> fields, Settings settings) noexcept
        : m_fields(std::move(fields)), m_settings(std::move(settings)) {}

  private:
    friend class impl::StructCodec<Struct>;

    /// Whether a map has room in the struct. g++ 12 otherwise warns of writes past a small struct.
    static constexpr bool canKeepUnknown = sizeof(Struct) >= sizeof(AttributeMap);

    /// Reads into an object that has the defaults. Returns false if the map has problems; the
    /// object is then half filled.
    bool fill(AttributeMapBase const & map, Struct & object) const {
        unsigned int found = 0;
        if (!m_fields->read(map, object, found)) {
            return false;
        }
        if constexpr (canKeepUnknown) {
            if (m_rest != nullptr) {
                object.*m_rest =
                    found == map.size() ? AttributeMap() : impl::undescribed(map, m_settings);
            }
        }
        // The numbers also differ for alternates and for fields in nested maps.
        return found == map.size() || m_settings.allows_unknown() ||
               m_settings.find_problems(map).empty();
    }

    std::shared_ptr<impl::IBoundFields<Struct> const> m_fields;
    Settings m_settings;
    AttributeMap Struct::*m_rest = nullptr;
};

/// The binding of a struct with these fields, which are described, read and written in this order.
///
/// The constraint makes this function, rather than std::bind, the one that `bind<Struct>(...)`
/// means: the types in the fields make the compiler consider both.
///
/// @tparam Struct  Has a default constructor; a member of a base class may be a field.
/// @raises std::invalid_argument: two fields have the same name.
template <typename Struct, typename First, typename... Rest>

requires std::is_default_constructible_v<Struct> Binding<Struct> bind(First && first,
                                                                      Rest &&... rest) {
    Struct const defaults = Struct();
    Settings settings;
    auto const share = []<typename... Fields>(std::tuple<Fields...> fields) {
        return std::make_shared<impl::BoundFields<Struct, Fields...> const>(std::move(fields));
    };
    // In braces the fields are described in their order.
    std::tuple fields{first.bound(settings, defaults), rest.bound(settings, defaults)...};
    return Binding<Struct>(share(std::move(fields)), std::move(settings));
}

} // namespace vxattribute
