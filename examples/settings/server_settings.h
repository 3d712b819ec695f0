#pragma once

#include "vxattribute/attribute_map.h"
#include "vxcore/error_info.h"

#include <string>
#include <vector>

namespace settings {

/// The settings of the server in this example.
struct ServerSettings {
    std::string host;               // "host", in older files "server"
    unsigned short port = 8080;     // "port" or "listen", from 1
    std::vector<std::string> paths; // "paths", one to four
    double timeout = 30;            // "timeout", in seconds, above 0
    bool isVerbose = false;         // "verbose"
    char traceLevel = 41;           // "trace_level", by name or number
};

/// @raises error.vxattribute.query: a setting is missing, occurs too often, or has an unusable
/// value.
ServerSettings read_settings(vxattribute::AttributeMapBase const & config);

/// Returns the settings that no query asks for. Most are misspelt.
std::vector<vxattribute::AttributeName>
unknown_settings(vxattribute::AttributeMapBase const & config);

/// Returns one line for people about a failed query: the setting and what is wrong with it. Leaves
/// out the configuration, which the failure's own text shows in full.
std::string explain(vxcore::ErrorInfo::Ptr const & error);

} // namespace settings
