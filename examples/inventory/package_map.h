#pragma once

#include "control_file.h"

#include "vxattribute/attribute_map.h"

namespace inventory {

/// The names of a package's attributes. They are made once: making a name from characters costs
/// more than the rest of a look-up.
namespace names {

using vxattribute::AttributeName;

inline AttributeName const name("name");                        // String
inline AttributeName const version("version");                  // String
inline AttributeName const section("section");                  // String
inline AttributeName const installedSize("installed-size");     // Integer, KiB
inline AttributeName const essential("essential");              // Boolean
inline AttributeName const depends("depends");                  // String, one each
inline AttributeName const homepage("homepage");                // URI
inline AttributeName const conffileDigests("conffile-digests"); // Binary, 16 bytes each
inline AttributeName const listTime("list-time");               // AbsoluteTime
inline AttributeName const summary("summary");                  // String, one line
inline AttributeName const description("description");          // String, many lines

} // namespace names

/// Reads all packages of a database into a map of maps.
///
/// The key of a package is its name. For "Multi-Arch: same" it is "name:architecture", since
/// several of these may be installed. Where a name is taken, the architecture is added, and where
/// that is taken too, the version: "name:architecture=version".
///
/// A fact missing from a paragraph is missing from the package's map. The time is that of the
/// package's list file, in the folder "info" beside the database.
///
/// @raises error.inventory.data: bad data; see ControlFile.
vxattribute::AttributeMap read_inventory(ControlFile & file);

} // namespace inventory
