#pragma once

#include "vxattribute/export.h"
#include "vxcore/ref_count_ptr.h"
#include "vxserialize/memory_list.h"

namespace vxattribute::impl {

using MemoryListPtr = vxcore::RefCountPtr<vxserialize::MemoryList const>;

/// -1, 0 or 1 by the bytes of the two lists, however they are cut into segments: unsigned, a prefix
/// first. A null list counts as an empty one. No copy is made.
VXATTRIBUTE_API int compare_memory_lists(MemoryListPtr const & a, MemoryListPtr const & b) noexcept;

/// Folds the bytes as **signed** values: h = h * 5 + b. 0 for a null or empty list.
VXATTRIBUTE_API unsigned int hash_memory_list(MemoryListPtr const & list) noexcept;

} // namespace vxattribute::impl
