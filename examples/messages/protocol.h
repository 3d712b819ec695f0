#pragma once

#include "vxattribute/attribute_map.h"
#include "vxattribute/attribute_name_package_set.h"

#include <chrono>
#include <cstddef>

/// What the server and its clients agree on. Each message is a map with a name `kind`, in a frame
/// of its own:
///
///     client                                   server
///     hello   client, packages: ids       ->
///                                         <-   want    packages: the ids that it lacks
///     package names: one message each     ->
///                                         <-   ready   once it has them all
///     report  the typical message, coded  ->
///     secret  about, value: sealed        ->
///     total                               ->
///                                         <-   total   reports, dropped, highest_load
///
/// From `ready` on, both sides code names with the packages that the hello listed. Whatever breaks
/// the rules is answered with `refused`, which has a reason, and the connection is closed.
namespace messages {

using vxattribute::AttributeName;
using vxattribute::AttributeNamePackage;
using vxattribute::AttributeNamePackageSet;

using Clock = std::chrono::steady_clock;

namespace kind {

inline constexpr char hello[] = "hello";
inline constexpr char want[] = "want";
inline constexpr char package[] = "package";
inline constexpr char ready[] = "ready";
inline constexpr char report[] = "report";
inline constexpr char secret[] = "secret";
inline constexpr char total[] = "total";
inline constexpr char refused[] = "refused";

} // namespace kind

/// The names are made once: interning a text costs more than looking a name up in a map.
namespace name {

inline AttributeName const kind("kind");
inline AttributeName const client("client");
inline AttributeName const packages("packages");
inline AttributeName const names("names");
inline AttributeName const about("about");
inline AttributeName const value("value");
inline AttributeName const reason("reason");
inline AttributeName const reports("reports");
inline AttributeName const dropped("dropped");
inline AttributeName const highest_load("highest_load");

} // namespace name

/// What a peer can make the other side keep, at most.
namespace limit {

inline constexpr unsigned int message = 256 * 1024; // bytes of one
inline constexpr std::size_t output = 64 * 1024;    // bytes that wait to be written
inline constexpr unsigned int attributes = 256;     // of a message
inline constexpr unsigned int packages = 8;         // of a connection
inline constexpr unsigned int package_names = 1024; // of a package
inline constexpr std::size_t stored_packages = 64;  // on disk
inline constexpr std::size_t connections = 32;
inline constexpr unsigned int dropped_reports = 10; // before the connection is closed

} // namespace limit

} // namespace messages
