#include "vxserialize/memory_list_order.h"

#include "vxcore/hash.h"

#include <algorithm>
#include <cstring>

namespace vxserialize::impl {

namespace {

unsigned int size_of(MemoryListPtr const & list) noexcept {
    return list ? list->size() : 0;
}

} // namespace

int compare_memory_lists(MemoryListPtr const & a, MemoryListPtr const & b) noexcept {
    unsigned int common = std::min(size_of(a), size_of(b));
    if (common != 0) {
        MemoryListCursor left = a->reader();
        MemoryListCursor right = b->reader();
        while (common != 0) {
            unsigned int leftSize;
            unsigned int rightSize;
            unsigned char const * const leftData = left.data_at_cursor(leftSize);
            unsigned char const * const rightData = right.data_at_cursor(rightSize);
            // The longest piece that is contiguous in both lists.
            unsigned int const piece = std::min({leftSize, rightSize, common});
            if (int const order = std::memcmp(leftData, rightData, piece); order != 0) {
                return order < 0 ? -1 : 1;
            }
            left.cursor_advance(piece);
            right.cursor_advance(piece);
            common -= piece;
        }
    }
    return int{size_of(a) > size_of(b)} - int{size_of(a) < size_of(b)};
}

unsigned int hash_memory_list(MemoryListPtr const & list) noexcept {
    // Folded byte by byte, so that equal bytes have equal hashes however they are split.
    unsigned int h = 0;
    if (list) {
        for (auto segment = list->segment_read_iterator(); !segment.at_end(); ++segment) {
            h = vxcore::hash_bytes(
                {reinterpret_cast<char const *>(segment->data()), segment->size()}, h);
        }
    }
    return h;
}

} // namespace vxserialize::impl
