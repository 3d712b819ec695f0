#include "vxcrypto/cleansed_block.h"

#include "vxcrypto/cleanse.h"

#include <new>

namespace vxcrypto::impl {

CleansedBlock::~CleansedBlock() {
    cleanse(m_block, m_size);
    ::operator delete(m_block);
    m_size = 0;
    m_block = nullptr;
}

void CleansedBlock::allocate(unsigned int size) {
    if (m_block == nullptr) {
        m_block = ::operator new(size);
        m_size = size;
    }
}

} // namespace vxcrypto::impl
