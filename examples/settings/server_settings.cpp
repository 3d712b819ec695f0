#include "server_settings.h"

#include "vxattribute/elements.h"
#include "vxattribute/error_codes.h"
#include "vxattribute/trace_level.h"
#include "vxattribute/unknown_names.h"

#include <stdexcept>

namespace settings {

using namespace vxattribute;

namespace {

enum ESetting { eHost, ePort, ePaths, eTimeout, eVerbose, eTraceLevel };

/// The queries, made once. Making their names again for each query would cost more than the
/// answers.
std::vector<Query> const & queries() {
    static std::vector<Query> const all = {
        Query("host").alternate("server").required(true).scalar(true),
        Query("port").alternate("listen").scalar(true),
        Query("paths", 1, 4),
        Query("timeout").scalar(true),
        Query("verbose").scalar(true),
        Query("trace_level").scalar(true),
    };
    return all;
}

template <typename Matcher>
void ask(ESetting setting, AttributeMapBase const & config, Matcher && matcher) {
    queries()[setting].execute(config, matcher, nullptr);
}

/// A matcher that accepts any value of the type.
template <typename T>
auto into(T & target) {
    return [&target](Query::MatchContext const & found) {
        found.value().assign_to(target);
        return true;
    };
}

} // namespace

ServerSettings read_settings(AttributeMapBase const & config) {
    ServerSettings result;
    ask(eHost, config, into(result.host));
    ask(ePort, config, [&result](Query::MatchContext const & found) {
        return found.value().assign_to(result.port) != 0;
    });
    ask(ePaths, config, [&result](Query::MatchContext const & found) {
        auto const paths = elements<std::string>(found.attribute_value());
        result.paths.assign(paths.begin(), paths.end());
        for (std::string const & path : paths) {
            if (!path.starts_with('/')) {
                throw std::runtime_error("the path \"" + path + "\" does not start with a slash");
            }
        }
        return true;
    });
    ask(eTimeout, config, [&result](Query::MatchContext const & found) {
        // People write 30 as well as 0.5, and the former is an Integer.
        result.timeout = found.attribute_value().type() == ValueTypeId::typeInteger
                             ? found.value().convert_to<int>()
                             : found.value().convert_to<double>();
        return result.timeout > 0;
    });
    ask(eVerbose, config, into(result.isVerbose));
    ask(eTraceLevel, config, TraceLevel(result.traceLevel));
    return result;
}

std::vector<AttributeName> unknown_settings(AttributeMapBase const & config) {
    return unknown_names(config, queries());
}

std::string explain(vxcore::ErrorInfo::Ptr const & error) {
    auto const param = [&error](char const * name) {
        std::string const * const value = error->params().find_value(name);
        return value != nullptr ? *value : std::string();
    };
    std::string const name = Query::bad_attribute_name(error);
    if (error->matches(error::vxattribute_query_notFound)) {
        return name + " is missing";
    }
    if (error->matches(error::vxattribute_query_tooMany)) {
        return name + ": more values than " + param("maximum");
    }
    if (error->matches(error::vxattribute_query_tooFew)) {
        return name + ": fewer values than " + param("minimum");
    }
    if (error->matches(error::vxattribute_query_badValue)) {
        return name + ": " +
               (error->nested() ? error->nested()->text() : param("value") + " is out of range");
    }
    return error->text();
}

} // namespace settings
