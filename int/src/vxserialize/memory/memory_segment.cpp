#include "vxserialize/memory_segment.h"

#include <cstring>
#include <new>
#include <stdexcept>

namespace vxserialize {

vxcore::RefCountPtr<impl::MemoryBlock> impl::MemoryBlock::create(unsigned int capacity) {
    // One allocation for the object and its bytes, which `destroy` therefore frees as raw memory.
    void * const memory = ::operator new(sizeof(MemoryBlock) + capacity);
    return vxcore::RefCountPtr<MemoryBlock>(::new (memory) MemoryBlock(capacity));
}

void impl::MemoryBlock::destroy() noexcept {
    this->~MemoryBlock();
    ::operator delete(static_cast<void *>(this));
}

unsigned char * MemorySegment::get_inplace_write_ptr(unsigned int size) {
    if (size > m_size) {
        throw std::out_of_range("vxserialize::MemorySegment::get_inplace_write_ptr()");
    }
    // Other lists must not see the write, so the segment moves to a copy of its bytes.
    if (is_shared()) {
        vxcore::RefCountPtr<impl::MemoryBlock> own = impl::MemoryBlock::create(m_size);
        std::memcpy(own->data(), m_data, m_size);
        m_data = own->data();
        m_block.swap(own); // the old block is released last: it holds what was copied
    }
    return m_data;
}

unsigned int MemorySegment::own_slack() const noexcept {
    // Another user of the block may have written after this segment, or may do so.
    if (!m_block || is_shared()) {
        return 0;
    }
    return static_cast<unsigned int>(m_block->data() + m_block->capacity() - (m_data + m_size));
}

} // namespace vxserialize
