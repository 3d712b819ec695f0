#pragma once

#include "vxattribute/attribute_name.h"

#include <string>
#include <string_view>
#include <vector>

/// Parts of the paths of map_path.h.
namespace vxattribute::impl {

/// Splits a path at its slashes, one step after the other.
class PathSteps {
  public:
    explicit PathSteps(std::string_view path) noexcept : m_rest(path) {}

    bool at_end() const noexcept { return m_isDone; }

    /// The next step, with its escapes.
    std::string_view next() noexcept {
        std::size_t const slash = m_rest.find('/');
        std::string_view const step = m_rest.substr(0, slash);
        m_isDone = slash == std::string_view::npos;
        m_rest.remove_prefix(m_isDone ? m_rest.size() : slash + 1);
        return step;
    }

  private:
    std::string_view m_rest;
    bool m_isDone = false;
};

/// The step without its escapes. A tilde that starts none is kept. Decoded in one pass, so the
/// result of an escape never starts another one: "~01" is "~1".
inline std::string name_of_step(std::string_view step) {
    std::string name;
    for (std::size_t i = 0; i < step.size(); ++i) {
        bool const isEscape =
            step[i] == '~' && i + 1 < step.size() && (step[i + 1] == '0' || step[i + 1] == '1');
        name += isEscape ? (step[++i] == '0' ? '~' : '/') : step[i];
    }
    return name;
}

/// The names on a path of maps, the outermost first. A slash before them is ignored, so that the
/// paths of RFC 6901 may be passed as they are.
inline std::vector<AttributeName> names_of_path(std::string_view path) {
    std::vector<AttributeName> names;
    for (PathSteps steps(path.starts_with('/') ? path.substr(1) : path); !steps.at_end();) {
        names.emplace_back(name_of_step(steps.next()));
    }
    return names;
}

} // namespace vxattribute::impl
