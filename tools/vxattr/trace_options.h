#pragma once

#include "vxattribute/trace_formatter.h"

#include <string>

namespace CLI {
class App;
}

namespace vxattr {

/// The settings of a TraceFormatter as options of the command line. Names are always sorted.
struct TraceOptions {
    bool noTypes = false;
    bool bareScalars = false;
    bool visible = false;
    unsigned int maxElements = 32;
    unsigned int maxString = 4096;
    unsigned int multilineFrom = 128;
    unsigned int maxDump = 256;
    unsigned int dumpLine = 32;
    std::string linePrefix = "\n ";
    std::string indent = "  ";
    std::string nullError = "##NULL##";

    vxattribute::TraceFormatter formatter() const;
};

void add_trace_options(CLI::App & command, TraceOptions & options);

} // namespace vxattr
