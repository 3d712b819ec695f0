// Exports the inline functions of StringKey for programs that call them: those that were compiled
// when they were not inline, or without optimization. A compiler emits an inline function where its
// address is taken, or where a call to it is not inlined: this file is compiled with -fno-inline.

#include "vxcore/string_key.h"

namespace vxcore::impl {

/// Never called.
void emit_inline_functions_of_string_key(StringKey const & key,
                                         std::string const & (StringKey::** value)() const noexcept,
                                         unsigned int (StringKey::** hash)() const noexcept);

void emit_inline_functions_of_string_key(StringKey const & key,
                                         std::string const & (StringKey::** value)() const noexcept,
                                         unsigned int (StringKey::** hash)() const noexcept) {
    StringKey const copy(key);
    *value = &StringKey::value;
    *hash = &StringKey::hash;
}

} // namespace vxcore::impl
