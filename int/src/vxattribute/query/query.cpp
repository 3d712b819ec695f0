#include "vxattribute/query.h"

#include "vxattribute/error_codes.h"
#include "vxattribute/map_path.h"
#include "vxattribute/to_text.h"
#include "vxattribute/trace/text_stream_internal.h"
#include "vxcore/error_composer.h"
#include "vxcore/streamers.h"
#include "vxcore/text_conversion.h"

namespace vxattribute {

namespace {

constexpr char const queryImpl[] = "vxattribute::Query::query_impl()";

/// All names in double quotes, in search order.
std::string names_text(std::vector<AttributeName> const & names) {
    constexpr unsigned int maxShown = 256; // bytes of a name
    impl::TextStream stream;
    char const * separator = "";
    for (AttributeName const & name : names) {
        stream << separator << vxcore::streamers::String(name.value(), maxShown, '"');
        separator = " or ";
    }
    return std::move(stream).str();
}

[[noreturn]] void throw_not_found(std::vector<AttributeName> const & names,
                                  AttributeMapBase const & config) {
    vxcore::ErrorComposer("No values configured under {@name} in {@config}")
        .param("name", names_text(names))
        .param("config", to_text(config))
        .throw_error(error::vxattribute_query_notFound, VXCORE_LOCATION(queryImpl));
}

/// @param limit  The name of the parameter for `count`, the limit that was exceeded.
[[noreturn]] void throw_count(vxcore::ErrorCode const & code, char const * message,
                              char const * limit, unsigned short count, AttributeName const & name,
                              AttributeMapBase const & config) {
    vxcore::ErrorComposer(message)
        .param(limit, vxcore::to_string(count))
        .param("name", name.value())
        .param("config", to_text(config))
        .throw_error(code, VXCORE_LOCATION(queryImpl));
}

/// The value of a path, which may have a slash in front; a null pointer when there is none.
AttributeValue const * find_by_path(AttributeMapBase const & config, std::string_view path) {
    return find_path(config, path.substr(path.starts_with('/') ? 1 : 0));
}

} // namespace

Query::Query(AttributeName const & name, unsigned short min_count, unsigned short max_count)
    : m_names(1, name), m_minCount(min_count), m_maxCount(max_count) {}

Query Query::at_path(std::string_view path, unsigned short min_count, unsigned short max_count) {
    Query query(AttributeName(path), min_count, max_count);
    query.m_usesPaths = true;
    return query;
}

Query & Query::alternate(AttributeName const & name) {
    m_names.push_back(name);
    return *this;
}

Query & Query::required(bool isRequired) noexcept {
    m_minCount = isRequired ? 1 : 0;
    return *this;
}

Query & Query::scalar(bool isScalar) noexcept {
    m_maxCount = isScalar ? 1 : noMaximum;
    return *this;
}

Attribute Query::query_impl(AttributeMapBase const & config) const {
    // The first name that has a value decides. If that value does not fit, alternates are not
    // tried.
    for (AttributeName const & name : m_names) {
        AttributeValue const * const value =
            m_usesPaths ? find_by_path(config, name.value()) : config.query_ptr(name);
        if (value == nullptr) {
            continue;
        }
        unsigned int const count = value->size();
        if (count > m_maxCount) {
            throw_count(error::vxattribute_query_tooMany,
                        "More than {@maximum} values configured under {@name} in {@config}",
                        "maximum", m_maxCount, name, config);
        }
        if (count < m_minCount) {
            throw_count(error::vxattribute_query_tooFew,
                        "Fewer than {@minimum} values configured under {@name} in {@config}",
                        "minimum", m_minCount, name, config);
        }
        return Attribute(name, *value);
    }
    if (m_minCount != 0) {
        throw_not_found(m_names, config);
    }
    return Attribute();
}

Attribute Query::execute(AttributeMapBase const & config, ErrorPtr * error) const {
    ErrorPtr failure;
    try {
        return query_impl(config);
    } catch (std::exception const & e) {
        failure = info_of(e);
    }
    if (error == nullptr) {
        vxcore::throw_error(std::move(failure));
    }
    *error = std::move(failure);
    return Attribute();
}

Attribute Query::reject(Attribute const & attribute, AttributeMapBase const & config,
                        ErrorPtr nested, ErrorPtr * error) {
    ErrorPtr failure = invalid_value_error(
        attribute, config, VXCORE_LOCATION("vxattribute::Query::execute()"), std::move(nested));
    if (error == nullptr) {
        vxcore::throw_error(std::move(failure));
    }
    *error = std::move(failure);
    return Attribute();
}

Query::ErrorPtr Query::invalid_value_error(Attribute const & attribute,
                                           AttributeMapBase const & config,
                                           vxcore::SourceLocation const & location,
                                           ErrorPtr nested) {
    // A failure that names an attribute already is more specific, so it is returned as it is.
    if (nested && (attribute.name().empty() || !bad_attribute_name(nested).empty())) {
        return nested;
    }
    return vxcore::ErrorComposer("Invalid value ({@value}) configured under {@name} in {@config}")
        .param("value", to_text(attribute.value()))
        .param("name", attribute.name().value())
        .param("config", to_text(config))
        .create(error::vxattribute_query_badValue, location, std::move(nested));
}

Query::ErrorPtr Query::info_of(std::exception const & e) {
    return vxcore::ErrorInfo::from_exception(e, VXCORE_LOCATION("vxattribute::Query::execute()"));
}

std::string const & Query::bad_attribute_name(ErrorPtr const & error) {
    for (vxcore::ErrorInfo const * link = error.get(); link != nullptr;
         link = link->nested().get()) {
        if (link->matches(error::vxattribute_query)) {
            if (std::string const * const name = link->params().find_value("name")) {
                return *name;
            }
        }
    }
    return vxcore::g_emptyString;
}

} // namespace vxattribute
