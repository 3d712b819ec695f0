#pragma once

#include "vxattribute/attribute_map.h"
#include "vxcore/error_info.h"

#include <string>
#include <vector>

namespace settings {

/// What the server of this example is told by its configuration.
struct ServerSettings {
    std::string host;               // "host", in older files "server"
    unsigned short port = 8080;     // "port" or "listen", from 1
    std::vector<std::string> paths; // "paths", one to four
    double timeout = 30;            // "timeout", in seconds, above 0
    bool isVerbose = false;         // "verbose"
    char traceLevel = 41;           // "trace_level", by name or number
};

/// @raises error.vxattribute.query: a setting is missing, there too often, or of no use.
ServerSettings read_settings(vxattribute::AttributeMapBase const & config);

/// Settings that nothing asks for, most often misspelt ones.
std::vector<vxattribute::AttributeName>
unknown_settings(vxattribute::AttributeMapBase const & config);

/// One line about a failed query, for people: the setting and what is wrong with it. Without the
/// configuration, which the failure's own text shows as a whole.
std::string explain(vxcore::ErrorInfo::Ptr const & error);

} // namespace settings
