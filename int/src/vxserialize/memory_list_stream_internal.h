#pragma once

#include "vxserialize/memory_list.h"
#include "vxserialize/reader.h"

namespace vxserialize::impl {

/// A stream over the next `size` bytes at `cursor`, a place in `list`, which it keeps alive.
ReadStreamPtr create_memory_list_stream(vxcore::RefCountPtr<MemoryList const> list,
                                        MemoryListCursor const & cursor, unsigned int size);

} // namespace vxserialize::impl
