#include "report.h"

#include "vxattribute/attribute_access.h"
#include "vxattribute/collect_names.h"
#include "vxattribute/into.h"
#include "vxattribute/make_value.h"
#include "vxattribute/number_access.h"
#include "vxattribute/query.h"

#include <stdexcept>

namespace messages {

using namespace vxattribute;

namespace {

AttributeName const sequence("sequence");
AttributeName const host("host");
AttributeName const process("process");
AttributeName const pid("pid");
AttributeName const load("load");
AttributeName const cpu("cpu"); // the load in version 1
AttributeName const memory("memory");
AttributeName const time("time");
AttributeName const run("run");
AttributeName const tags("tags");

AttributeValue const kindReport = kind::report; // made once, shared by all

} // namespace

AttributeNamePackage::Ptr report_package(int version) {
    AttributeNamePackage::Composer names;
    collect_names(to_message(Report(), version), names);
    return names.compose();
}

AttributeMap to_message(Report const & report, int version) {
    auto const bytes = static_cast<long long>(report.memory);
    if (version == 1) {
        return make_map({{name::kind, kindReport},
                         {sequence, report.sequence},
                         {host, report.host},
                         {process, report.process},
                         {pid, report.pid},
                         {cpu, report.load},
                         {memory, bytes},
                         {time, report.time}});
    }
    return make_map({{name::kind, kindReport},
                     {sequence, report.sequence},
                     {host, report.host},
                     {process, report.process},
                     {pid, report.pid},
                     {load, report.load},
                     {memory, bytes},
                     {time, report.time},
                     {run, report.run},
                     {tags, make_list(std::span(report.tags))}});
}

Report read_report(AttributeMapBase const & message) {
    static Query const loadQuery = Query(load).alternate(cpu).required(true).scalar(true);
    static Query const timeQuery = Query(time).scalar(true);
    static Query const runQuery = Query(run).scalar(true);

    Report report;
    report.sequence = get<long long>(message, sequence);
    report.host = get_or(message, host, report.host);
    report.process = get_or(message, process, report.process);
    report.pid = get_number_or<int>(message, pid, report.pid);
    report.memory = get_number_or<unsigned long long>(message, memory, report.memory);
    loadQuery.execute(message, into(report.load), nullptr);
    timeQuery.execute(message, into(report.time), nullptr);
    runQuery.execute(message, into(report.run), nullptr);
    auto const list = get_list<std::string>(message, tags);
    report.tags.assign(list.begin(), list.end());
    if (!(report.load >= 0)) { // nor is it NaN
        throw std::runtime_error("load: is below 0");
    }
    return report;
}

} // namespace messages
