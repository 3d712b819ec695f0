#pragma once

#include <locale>
#include <sstream>

namespace vxattribute::impl {

/// A stream into a string, for messages. Its numbers do not depend on the locale of the program.
/// What is raised while it is written to passes through, `std::bad_alloc` above all: other streams
/// keep that to themselves, and the text is cut without a trace.
class TextStream final : public std::ostringstream {
  public:
    TextStream() {
        imbue(std::locale::classic());
        exceptions(std::ios_base::badbit);
    }
};

} // namespace vxattribute::impl
