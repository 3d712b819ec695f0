#pragma once

#include "check.h"
#include "memory_watch.h"

#include "vxcore/error_exception.h"
#include "vxserialize/reader.h"

#include <string_view>

namespace vxfuzz {

/// Calls `read` until the data ends or fails. Checks that a failure changes nothing and that memory
/// stays within 128 bytes for each of the `size` bytes of data and a small constant.
///
/// @param read     Reads one object.
/// @param is_kept  Returns true when the target of `read` is as it was before the call.
template <typename Read, typename IsKept>
void read_all(vxserialize::Reader & reader, std::size_t size, Read read, IsKept is_kept) {
    MemoryWatch const watch;
    while (reader.next_type() != vxserialize::eElement_None) {
        try {
            read();
        } catch (vxcore::ErrorException const & e) {
            check(std::string_view(e.what()).size() < 1000 + size, "messages are of a modest size");
            check(is_kept(), "a failure leaves the target as it was");
            break;
        }
    }
    check(watch.peak() <= 128 * size + 65536, "memory stays within 128 times the data");
}

} // namespace vxfuzz
