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
