#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/convertable_value.h"
#include "vxcore/error_info.h"

#include <exception>
#include <utility>
#include <vector>

namespace vxattribute {

/// A question to a configuration: the value of one setting that may go by several names and must
/// have so many elements.
///
/// Set up once, with ready names, and run as often as you like. Every failure names the setting and
/// shows the configuration that was searched, cut only by the limits of `defaultTraceFormatter` and
/// at `max_trace_depth`.
///
///     static Query const port = Query("port").alternate("listen").required(true).scalar(true);
///     unsigned short number = 8080;
///     port.execute(config, [&](Query::MatchContext const & found) {
///         return found.value().assign_to(number) != 0;
///     }, nullptr);
///
/// Cost. A query that is answered allocates nothing but what a copy of the value needs: one tree
/// search for each name that is tried.
///
/// Threads. A query that nobody changes may be run from any number of threads.
///
/// Errors. All codes lie below error.vxattribute.query and carry the parameter `name`. A function
/// with an `error` argument stores the failure there and gives a default attribute; with a null
/// argument it raises. On success `*error` is not touched.
class VXATTRIBUTE_API Query {
  public:
    class MatchContext;
    using ErrorPtr = vxcore::ErrorInfo::Ptr;

    /// As `max_count`: a limit like any other, so that not even this admits 65536 elements.
    static constexpr unsigned short noMaximum = 0xFFFF;

    /// @param min_count  Fewest elements; 0 means that the setting may be absent.
    /// @param max_count  Most elements.
    explicit Query(AttributeName const & name, unsigned short min_count = 0,
                   unsigned short max_count = noMaximum);

    /// Several names, tried in this order. None at all finds nothing.
    explicit Query(std::vector<AttributeName> names, unsigned short min_count = 0,
                   unsigned short max_count = noMaximum) noexcept
        : m_names(std::move(names)), m_minCount(min_count), m_maxCount(max_count) {}

    /// Adds a name that is tried behind those that are there.
    Query & alternate(AttributeName const & name);

    /// Sets the fewest elements to 1 or 0.
    Query & required(bool isRequired) noexcept;

    /// Sets the most elements to 1 or `noMaximum`.
    Query & scalar(bool isScalar) noexcept;

    std::vector<AttributeName> const & names() const noexcept VXCORE_LIFETIMEBOUND {
        return m_names;
    }

    unsigned short min_count() const noexcept { return m_minCount; }

    unsigned short max_count() const noexcept { return m_maxCount; }

    /// The setting under the first of the names that is there; the value is shared. A name that is
    /// there with null counts as found, with no elements.
    ///
    /// @return the default attribute, whose name is empty, for a setting that may be absent and is.
    /// @raises error.vxattribute.query.notFound, .tooMany, .tooFew, when `error` is null.
    Attribute execute(AttributeMapBase const & config, ErrorPtr * error) const;

    /// The same, and then asks `matcher` about the value found. It is called with a
    /// `MatchContext const &` and gives true when the value is good; it may raise instead of giving
    /// false, and its exception then becomes the nested failure. It is not called for an absent
    /// setting. Nor is it called for a setting under the empty name, which no failure could name:
    /// its elements are counted, and the setting is returned as found.
    ///
    /// @raises error.vxattribute.query.badValue: the matcher did not accept the value, unless the
    ///         matcher's own failure already says which setting is to blame.
    template <typename Matcher>
    Attribute execute(AttributeMapBase const & config, Matcher && matcher, ErrorPtr * error) const;

    /// The name of the setting that failed a query: the parameter `name` of the first link of the
    /// chain that is a query failure and has one. The empty string when there is none.
    ///
    /// @keeps The reference holds as long as the chain of `error` lives.
    static std::string const & bad_attribute_name(ErrorPtr const & error VXCORE_LIFETIMEBOUND);

  private:
    Attribute query_impl(AttributeMapBase const & config) const;

    /// What to report when a matcher did not accept `attribute`: `nested` itself when it already
    /// names a setting, or when there is no name to add; else a new failure around it. Made, not
    /// raised.
    static ErrorPtr invalid_value_error(Attribute const & attribute,
                                        AttributeMapBase const & config,
                                        vxcore::SourceLocation const & location, ErrorPtr nested);

    /// Reports through `invalid_value_error`, to `*error` or by raising.
    static Attribute reject(Attribute const & attribute, AttributeMapBase const & config,
                            ErrorPtr nested, ErrorPtr * error);

    /// The failure that `e` carries or becomes.
    static ErrorPtr info_of(std::exception const & e);

    std::vector<AttributeName> m_names;
    unsigned short m_minCount;
    unsigned short m_maxCount;
};

/// What a matcher looks at. Refers to objects that live for the call only.
class VXATTRIBUTE_API Query::MatchContext {
  public:
    MatchContext(Attribute const & attribute VXCORE_LIFETIMEBOUND,
                 AttributeMapBase const & configuration VXCORE_LIFETIMEBOUND,
                 Query const & query VXCORE_LIFETIMEBOUND) noexcept
        : m_attribute(attribute), m_configuration(configuration), m_query(query) {}

    /// The name that was found, which need not be the first of the query.
    AttributeName const & name() const noexcept { return m_attribute.name(); }

    AttributeValue const & attribute_value() const noexcept { return m_attribute.value(); }

    /// The value, for reading it into an ordinary variable.
    ConvertableValue value() const noexcept { return ConvertableValue(m_attribute.value()); }

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
