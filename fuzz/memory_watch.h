#pragma once

#include <cstddef>

namespace vxfuzz {

/// Counts the heap bytes of this thread while it lives. One at a time.
///
/// Sanitizers report each allocation; elsewhere linking this replaces the global `operator new`,
/// which also serves the libraries under test.
class MemoryWatch {
  public:
    MemoryWatch() noexcept;
    MemoryWatch(MemoryWatch const &) = delete;
    MemoryWatch & operator=(MemoryWatch const &) = delete;
    ~MemoryWatch();

    /// The most bytes that were allocated at one moment, less what was there at the start.
    std::size_t peak() const noexcept;
};

} // namespace vxfuzz
