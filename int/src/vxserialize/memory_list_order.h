#pragma once

#include "vxserialize/memory_list.h"

/// Order and hash of payloads, by their bytes.
namespace vxserialize::impl {

using MemoryListPtr = vxcore::RefCountPtr<MemoryList const>;

/// Compares the bytes of two lists, however they are cut into segments: unsigned, a prefix before
/// a longer list. A null list counts as an empty one.
///
/// @return -1, 0 or 1.
/// @cost   O(bytes up to the first difference); no byte is copied.
VXSERIALIZE_API int compare_memory_lists(MemoryListPtr const & a, MemoryListPtr const & b) noexcept;

/// Folds the bytes as **signed** values: h = h * 5 + b. Returns 0 for a null or empty list. Equal
/// bytes have equal hashes, however they are cut into segments.
///
/// @cost  O(bytes); not stored.
VXSERIALIZE_API unsigned int hash_memory_list(MemoryListPtr const & list) noexcept;

} // namespace vxserialize::impl
