#include "vxattribute/sealed/memory_wipe_internal.h"
#include "vxcrypto/cleanse.h"

namespace vxattribute::impl {

void wipe(vxserialize::MemoryList & list) noexcept {
    list.overwrite_own_bytes(&vxcrypto::cleanse);
}

} // namespace vxattribute::impl
