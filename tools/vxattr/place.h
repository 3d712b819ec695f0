#pragma once

#include "vxattribute/attribute_map.h"

#include <string>

namespace vxattr {

/// A value inside the value of a file, found by its path. The empty path means the whole value.
/// Where the file holds several maps, the first step is the index of one of them.
class Place {
  public:
    /// @param file  The name of the file, for messages.
    Place(std::string file, vxattribute::AttributeValue const & value, std::string const & path);

    /// The value at this place; null when there is none.
    vxattribute::AttributeValue const * find() const;

    /// The value at this place.
    ///
    /// @raises Failure: there is none.
    vxattribute::AttributeValue const & get() const;

    /// A copy of the whole value with `value` at this place, which must exist.
    vxattribute::AttributeValue replaced(vxattribute::AttributeValue const & value) const;

    /// File and path, for messages.
    std::string text() const;

  private:
    std::string const m_file;
    std::string const m_path;
    vxattribute::AttributeMap const m_root; // the whole value under a name
};

} // namespace vxattr
