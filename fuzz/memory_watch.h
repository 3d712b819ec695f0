#pragma once

#include <cstddef>

namespace vxfuzz {

/// Counts the heap bytes of this thread while it lives. Only one may exist at a time.
///
/// Sanitizers report each allocation. Without them, linking this file replaces the global `operator
/// new`, which also serves the libraries under test.
class MemoryWatch {
  public:
    MemoryWatch() noexcept;
    MemoryWatch(MemoryWatch const &) = delete;
    MemoryWatch & operator=(MemoryWatch const &) = delete;
    ~MemoryWatch();

    /// Returns the most bytes that were allocated at one time, less those allocated at
    /// construction.
    std::size_t peak() const noexcept;
};

} // namespace vxfuzz
