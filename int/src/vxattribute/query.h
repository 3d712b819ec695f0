#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/convertable_value.h"
#include "vxcore/error_info.h"

#include <exception>
#include <string_view>
#include <utility>
#include <vector>

namespace vxattribute {

/// A query for one setting of a configuration: its names, and how many elements its value must
/// have.
///
/// Make it once, with ready names, and run it as often as needed. Every failure names the setting
/// and shows the configuration that was searched, cut only by the limits of `defaultTraceFormatter`
/// and at `max_trace_depth`.
///
///     static Query const port = Query("port").alternate("listen").required(true).scalar(true);
///     unsigned short number = 8080;
///     port.execute(config, into(number), nullptr);   // into.h
///     port.execute(config, [](Query::MatchContext const & found) {   // a matcher of one's own
///         return found.value().convert_to<int>() % 2 == 0;
///     }, nullptr);
///
/// Cost. One tree search for each name that is tried. A query that succeeds allocates only what a
/// copy of the value needs; one that fails renders the configuration.
///
/// Threads. A query that is not being changed may be run from any number of threads.
///
/// Errors. All codes are below error.vxattribute.query and carry the parameter `name`. A function
/// with an `error` argument stores the failure there and returns a default attribute; when the
/// argument is null, it raises. A success leaves `*error` alone.
class VXATTRIBUTE_API Query {
  public:
    class MatchContext;
    using ErrorPtr = vxcore::ErrorInfo::Ptr;

    /// The largest `max_count`. Values of more than 65,535 elements are still refused.
    static constexpr unsigned short noMaximum = 0xFFFF;

    /// A setting of one name.
    ///
    /// @param min_count  The fewest elements allowed; 0 means that the setting may be absent.
    /// @param max_count  The most elements allowed.
    explicit Query(AttributeName const & name, unsigned short min_count = 0,
                   unsigned short max_count = noMaximum);

    /// A setting of several names, tried in this order. Without names, nothing is found.
    explicit Query(std::vector<AttributeName> names, unsigned short min_count = 0,
                   unsigned short max_count = noMaximum) noexcept
        : m_names(std::move(names)), m_minCount(min_count), m_maxCount(max_count) {}

    /// A setting in nested maps: names with slashes between them, and the index of a map where a
    /// name holds several, as map_path.h describes. A slash in front means nothing, so the pointers
    /// of RFC 6901 work too. All names of this query are paths, those of `alternate` too.
    ///
    ///     static Query const rate = Query::at_path("limits/rate").scalar(true);
    ///
    /// What is found has the path as its name, and failures name it. A path through what is not a
    /// map leads to nothing.
    ///
    /// @cost  Each run makes the steps of the path, with a hash and a lock for each, but interns
    ///        nothing and allocates only for steps of more than 15 bytes.
    static Query at_path(std::string_view path, unsigned short min_count = 0,
                         unsigned short max_count = noMaximum);

    /// Adds a name that is tried after the present ones. Returns this query, as the next two.
    Query & alternate(AttributeName const & name) VXCORE_LIFETIMEBOUND;

    /// Sets `min_count` to 1 or 0.
    Query & required(bool isRequired) noexcept VXCORE_LIFETIMEBOUND;

    /// Sets `max_count` to 1 or `noMaximum`.
    Query & scalar(bool isScalar) noexcept VXCORE_LIFETIMEBOUND;

    /// The names in search order, and the limits. The reference holds until the query is changed or
    /// destroyed.
    std::vector<AttributeName> const & names() const noexcept VXCORE_LIFETIMEBOUND {
        return m_names;
    }

    /// Whether the names are paths: see `at_path`.
    bool uses_paths() const noexcept { return m_usesPaths; }

    unsigned short min_count() const noexcept { return m_minCount; }

    unsigned short max_count() const noexcept { return m_maxCount; }

    /// The setting: the first of the names that the configuration has, with a copy of its value. A
    /// name with the null value counts as found, with no elements.
    ///
    /// @return A default attribute, whose name is empty, when the setting may be absent and is.
    /// @raises error.vxattribute.query.notFound: none of the names is present. .tooMany, .tooFew:
    ///         more elements than `max_count`, fewer than `min_count`. Only when `error` is null.
    Attribute execute(AttributeMapBase const & config, ErrorPtr * error) const;

    /// The same, and then calls `matcher` for the value found.
    ///
    /// It is not called for an absent setting, nor for a setting under the empty name, which no
    /// failure could name: such a setting is returned when its number of elements is right.
    ///
    /// @param matcher  Is called with a `MatchContext const &` and returns whether it accepts the
    ///                 value. It may raise instead; its exception then becomes the nested failure.
    /// @raises error.vxattribute.query.badValue: the matcher did not accept the value. A failure of
    ///         the matcher that already names a setting is passed on instead.
    template <typename Matcher>
    Attribute execute(AttributeMapBase const & config, Matcher && matcher, ErrorPtr * error) const;

    /// The name of the setting that failed a query: the parameter `name` of the first failure in
    /// the chain of `error` that is of a query and has one. The empty string when there is none.
    ///
    /// @keeps The reference holds while the chain of `error` lives.
    static std::string const & bad_attribute_name(ErrorPtr const & error VXCORE_LIFETIMEBOUND);

  private:
    Attribute query_impl(AttributeMapBase const & config) const;

    /// What to report when a matcher did not accept `attribute`: `nested` itself when it already
    /// names a setting, or when there is no name to add; otherwise a new failure around it. It is
    /// returned, not raised.
    static ErrorPtr invalid_value_error(Attribute const & attribute,
                                        AttributeMapBase const & config,
                                        vxcore::SourceLocation const & location, ErrorPtr nested);

    /// Stores what `invalid_value_error` returns in `*error`, or raises it when `error` is null.
    static Attribute reject(Attribute const & attribute, AttributeMapBase const & config,
                            ErrorPtr nested, ErrorPtr * error);

    /// `e` as a failure, at the place of `execute`.
    static ErrorPtr info_of(std::exception const & e);

    std::vector<AttributeName> m_names;
    unsigned short m_minCount;
    unsigned short m_maxCount;
    bool m_usesPaths = false;
};

/// What a matcher is called with. It refers to objects that live for the duration of the call, so
/// neither it nor its references may be kept.
class VXATTRIBUTE_API Query::MatchContext {
  public:
    /// Keeps references to all three.
    MatchContext(Attribute const & attribute VXCORE_LIFETIMEBOUND,
                 AttributeMapBase const & configuration VXCORE_LIFETIMEBOUND,
                 Query const & query VXCORE_LIFETIMEBOUND) noexcept
        : m_attribute(attribute), m_configuration(configuration), m_query(query) {}

    /// The name that was found, which is not always the first of the query.
    AttributeName const & name() const noexcept { return m_attribute.name(); }

    /// The value that was found.
    AttributeValue const & attribute_value() const noexcept { return m_attribute.value(); }

    /// The same value, for reading it into an ordinary variable.
    ConvertableValue value() const noexcept { return ConvertableValue(m_attribute.value()); }

    /// The map that was searched, and the query.
    AttributeMapBase const & configuration() const noexcept { return m_configuration; }

    Query const & query() const noexcept { return m_query; }

  private:
    Attribute const & m_attribute;
    AttributeMapBase const & m_configuration;
    Query const & m_query;
};

template <typename Matcher>
Attribute Query::execute(AttributeMapBase const & config, Matcher && matcher,
                         ErrorPtr * error) const {
    Attribute found = execute(config, error);
    if (found.name().empty()) {
        return found;
    }
    ErrorPtr failure;
    try {
        if (matcher(MatchContext(found, config, *this))) {
            return found;
        }
    } catch (std::exception const & e) {
        failure = info_of(e);
    }
    return reject(found, config, std::move(failure), error);
}

} // namespace vxattribute
