#pragma once

#include <string>
#include <string_view>

namespace vxattr {

/// Adds a step to a path for its own lifetime. A walk that built a new path for each value would
/// take quadratic time where names are long.
class PathStepScope {
  public:
    PathStepScope(std::string & path, std::string_view step) : m_path(path), m_size(path.size()) {
        if (m_size != 0) {
            m_path += '/';
        }
        m_path += step;
    }

    PathStepScope(PathStepScope const &) = delete;
    PathStepScope & operator=(PathStepScope const &) = delete;

    ~PathStepScope() { m_path.resize(m_size); }

  private:
    std::string & m_path;
    std::size_t const m_size;
};

} // namespace vxattr
