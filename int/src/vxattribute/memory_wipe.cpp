#include "vxattribute/memory_wipe_internal.h"
#include "vxcrypto/cleanse.h"

namespace vxattribute::impl {

void wipe(vxserialize::MemoryList & list) noexcept {
    for (auto segment = list.segment_write_iterator(); !segment.at_end(); ++segment) {
        if (!segment->is_shared()) {
            vxcrypto::cleanse(segment->get_inplace_write_ptr(segment->size()), segment->size());
        }
    }
}

} // namespace vxattribute::impl
