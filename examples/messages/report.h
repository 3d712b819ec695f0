#pragma once

#include "protocol.h"

#include "vxcore/absolute_time.h"
#include "vxcore/uuid.h"

#include <string>
#include <vector>

namespace messages {

/// The state of a process on some machine: the typical message of this example.
///
/// Version 1 of the message has no `run` and no `tags`, and calls the load `cpu`. A server takes
/// both versions, whatever packages its clients bring.
struct Report {
    long long sequence = 0;
    std::string host = "unknown";
    std::string process = "unknown";
    int pid = 0;
    double load = 0;               // of a processor, not below 0
    unsigned long long memory = 0; // in bytes
    vxcore::AbsoluteTime time;
    vxcore::Uuid run; // the same for all reports of a run
    std::vector<std::string> tags;
};

/// The names of the reports of that version, 1 or 2, for sending them as numbers.
AttributeNamePackage::Ptr report_package(int version);

/// The message of kind "report".
vxattribute::AttributeMap to_message(Report const & report, int version);

/// Reads a message of kind "report". What is absent keeps its default, apart from the sequence and
/// the load, which are required. Names that it does not know are left alone: a later version may
/// have them.
///
/// @raises An error that names the attribute at fault.
Report read_report(vxattribute::AttributeMapBase const & message);

} // namespace messages
