#pragma once

#include "control_file.h"

#include "vxattribute/attribute_map.h"

namespace inventory {

/// The names of a package's attributes. Made once: a name made from characters at each use costs
/// more than all the rest of a look-up.
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

/// All packages of a database: a map of maps.
///
/// A package stands under its name, one of "Multi-Arch: same" under "name:architecture", since
/// several of these may be there. A second package of a name that is taken gets the architecture
/// too, and where that is taken the version: "name:architecture=version".
///
/// What a paragraph does not tell is not in the package's map. The list file, whose time is taken,
/// is sought in the folder "info" beside the database.
///
/// @raises error.inventory.data: bad data; see ControlFile.
vxattribute::AttributeMap read_inventory(ControlFile & file);

} // namespace inventory
