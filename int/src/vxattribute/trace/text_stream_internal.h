#pragma once

#include <locale>
#include <sstream>

namespace vxattribute::impl {

/// A stream into a string, for messages. Its numbers do not depend on the locale of the program.
/// Exceptions raised during a write reach the caller, `std::bad_alloc` in particular. Other
/// streams swallow them, which would cut the text silently.
class TextStream final : public std::ostringstream {
  public:
    TextStream() {
        imbue(std::locale::classic());
        exceptions(std::ios_base::badbit);
    }
};

} // namespace vxattribute::impl
