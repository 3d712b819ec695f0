#include "vxattr/place.h"

#include "vxattr/failure.h"
#include "vxattribute/make_value.h"
#include "vxattribute/map_path.h"

namespace vxattr {

using namespace vxattribute;

namespace {

constexpr char rootName[] = "value";

} // namespace

Place::Place(std::string file, AttributeValue const & value, std::string const & path)
    : m_file(std::move(file)), m_path(path.empty() ? rootName : std::string(rootName) + "/" + path),
      m_root(make_map({{rootName, value}})) {}

AttributeValue const * Place::find() const {
    return find_path(m_root, m_path);
}

AttributeValue const & Place::get() const {
    AttributeValue const * const value = find();
    if (value == nullptr) {
        throw Failure(m_file, "there is no '" + m_path.substr(sizeof rootName) + "'");
    }
    return *value;
}

AttributeValue Place::replaced(AttributeValue const & value) const {
    MutableAttributeMap root(m_root);
    set_path(root, m_path, value);
    return root.query(rootName);
}

std::string Place::text() const {
    return m_path == rootName ? m_file : m_file + ": " + m_path.substr(sizeof rootName);
}

} // namespace vxattr
