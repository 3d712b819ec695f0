#include "vxjson/lazy_text_impl.h"

namespace vxjson::impl {

void LazyText::assign(std::string_view text) {
    m_lent = {};
    m_own.assign(text);
}

void LazyText::reserve(std::size_t size) {
    m_own.reserve(size);
}

void LazyText::release() noexcept {
    std::string().swap(m_own);
}

void LazyText::copy() noexcept {
    m_own.assign(m_lent);
    m_lent = {};
}

} // namespace vxjson::impl
