#include "vxcore/string_key.h"

#include "vxcore/string/string_token_internal.h"
#include "vxcore/text_conversion.h"
#include "vxcore/text_size.h"

#include <ostream>

namespace vxcore {

StringKey::StringKey(std::string_view text) {
    if (!text.empty()) {
        text_size(text.size()); // for its check only
        m_token = impl::intern_token(text);
    }
}

StringKey::StringKey(StringKey const & other) noexcept : m_token(other.m_token) {
    if (m_token != nullptr) {
        m_token->count.fetch_add(1, std::memory_order_relaxed);
    }
}

StringKey::~StringKey() {
    if (m_token == nullptr) {
        return;
    }
    // Without the lock unless this may be the last reference. That one is dropped under the lock:
    // otherwise another thread could find the token in the table and use it while it is deleted.
    // Each decrement releases and the last one acquires, so all uses of the token come before its
    // deletion.
    unsigned int count = m_token->count.load(std::memory_order_relaxed);
    while (count > 1) {
        if (m_token->count.compare_exchange_weak(count, count - 1, std::memory_order_release,
                                                 std::memory_order_relaxed)) {
            return;
        }
    }
    impl::release_token(m_token);
}

bool StringKey::find_interned(std::string_view text, StringKey & key) noexcept {
    StringKey found;
    if (!text.empty()) {
        found.m_token = impl::find_token(text);
        if (found.m_token == nullptr) {
            return false;
        }
    }
    key.swap(found);
    return true;
}

std::string const & StringKey::value() const noexcept {
    return m_token != nullptr ? m_token->text : g_emptyString;
}

unsigned int StringKey::hash() const noexcept {
    return m_token != nullptr ? m_token->hash : 0;
}

void StringKey::write_trace(std::ostream & stream) const {
    stream << value();
}

} // namespace vxcore
