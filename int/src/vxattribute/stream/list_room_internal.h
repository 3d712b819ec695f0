#pragma once

#include <algorithm>

namespace vxattribute::impl {

/// The room to reserve for a list of a stream, in elements.
///
/// The count in a stream is input and may be false, so it must not cost memory before the data has
/// come. At most `limit` elements are reserved, which common lists do not exceed. Longer lists grow
/// as they are read.
inline unsigned int list_room(unsigned int count, unsigned int limit) noexcept {
    return std::min(count, limit);
}

// The limits.
inline constexpr unsigned int maxRoomForValues = 4096;
inline constexpr unsigned int maxRoomForMapElements = 256;
inline constexpr unsigned int maxRoomForNames = 8192;   // of a package
inline constexpr unsigned int maxRoomForPackages = 128; // of a set, and references to packages

} // namespace vxattribute::impl
