#include "vxattribute/sealed/memory_wipe_internal.h"
#include "vxcrypto/cleanse.h"

namespace vxattribute::impl {

void wipe(vxserialize::MemoryList & list) noexcept {
    list.overwrite_own_bytes(&vxcrypto::cleanse);
}

WipedList wipeable(vxcore::RefCountPtr<vxserialize::MemoryList const> const & opened) {
    using vxserialize::MemoryList;
    if (!opened) {
        return WipedList(MemoryList::create());
    }
    if (opened->has_unique_ref()) {
        auto & list = const_cast<MemoryList &>(*opened); // no list is created const
        return WipedList(vxcore::RefCountPtr<MemoryList>(&list));
    }
    // "NULL" returns the stored list itself, which must stay intact. Wiping the clone does not
    // change it, since the two share their memory.
    return WipedList(opened->shallow_clone());
}

} // namespace vxattribute::impl
