#pragma once

#include "vxserialize/memory_list.h"
#include "vxserialize/reader.h"

namespace vxserialize::impl {

/// Returns a stream over the `size` bytes at `cursor`, a position in `list`. It keeps `list` alive.
ReadStreamPtr create_memory_list_stream(vxcore::RefCountPtr<MemoryList const> list,
                                        MemoryListCursor const & cursor, unsigned int size);

/// The same over all bytes of `list`, which is not null.
ReadStreamPtr create_memory_list_stream(vxcore::RefCountPtr<MemoryList const> list);

} // namespace vxserialize::impl
