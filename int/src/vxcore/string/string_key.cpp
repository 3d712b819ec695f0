#include "vxcore/string_key.h"

#include "vxcore/string/string_token_internal.h"
#include "vxcore/text_size.h"

#include <ostream>

namespace vxcore {

StringKey::StringKey(std::string_view text) {
    if (!text.empty()) {
        text_size(text.size()); // for its check only
        m_token = impl::intern_token(text);
    }
}

void impl::StringToken::drop_shared_refs(unsigned int n) noexcept {
    // Without the lock unless these may be the last references. Those are dropped under the lock:
    // otherwise another thread could find the token in the table and use it while it is deleted.
    // Each decrement releases and the last one acquires, so all uses of the token come before its
    // deletion.
    unsigned int held = count.load(std::memory_order_relaxed);
    while (held > n) {
        if (count.compare_exchange_weak(held, held - n, std::memory_order_release,
                                        std::memory_order_relaxed)) {
            return;
        }
    }
    impl::release_token(this, n);
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

void StringKey::write_trace(std::ostream & stream) const {
    stream << value();
}

} // namespace vxcore
