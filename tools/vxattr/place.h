#pragma once

#include "vxattribute/attribute_map.h"

#include <string>

namespace vxattr {

/// One value inside the value of a file, by its path; the whole one by the empty path. Where the
/// file holds several maps, the first step is the index of one of them.
class Place {
  public:
    /// @param file  For messages.
    Place(std::string file, vxattribute::AttributeValue const & value, std::string const & path);

    /// Null when there is none.
    vxattribute::AttributeValue const * find() const;

    /// @raises Failure: there is none.
    vxattribute::AttributeValue const & get() const;

    /// The whole value with another one at this place, where there is one already.
    vxattribute::AttributeValue replaced(vxattribute::AttributeValue const & value) const;

    /// As messages call it: file and path.
    std::string text() const;

  private:
    std::string const m_file;
    std::string const m_path;
    vxattribute::AttributeMap const m_root; // the whole value under a name
};

} // namespace vxattr
