#pragma once

#include <locale>
#include <sstream>

namespace vxattribute::impl {

/// A stream into a string, for messages. Its numbers do not depend on the locale of the program.
/// Exceptions while it is written to pass through, `std::bad_alloc` above all. Other streams
/// swallow them, and the text would be cut silently.
class TextStream final : public std::ostringstream {
  public:
    TextStream() {
        imbue(std::locale::classic());
        exceptions(std::ios_base::badbit);
    }
};

} // namespace vxattribute::impl
