#include "vxjson/reader.h"

#include "vxjson/error_codes_internal.h"
#include "vxjson/tokenizer.h"

#include <new>

namespace vxjson {

namespace {

constexpr char const * in_next_child = "vxjson::Reader::next_child()";

} // namespace

Reader::Reader(ITokenizer & tokenizer) : Reader(tokenizer, Options()) {}

Reader::Reader(ITokenizer & tokenizer, Options const & options)
    : m_tokenizer(&tokenizer), m_known(dynamic_cast<Tokenizer *>(&tokenizer)),
      m_current(new Value(*this, nullptr, Value::eType_Root, {})), m_options(options) {}

Reader::~Reader() = default;

Reader::ValuePtr Reader::next_value() {
    if (m_failed) {
        fail_after_error(error::vxjson_reader, VXCORE_LOCATION("vxjson::Reader::next_value()"));
    }
    if (!m_current) {
        return nullptr;
    }
    if (m_currentPending) {
        m_currentPending = false;
        return m_current;
    }
    try {
        return advance();
    } catch (std::bad_alloc const &) {
        m_failed = true; // a token may be lost, and what follows would be misread
        throw;
    }
}

Reader::ValuePtr Reader::next_child(ValuePtr parent) {
    if (m_failed) {
        fail_after_error(error::vxjson_reader, VXCORE_LOCATION(in_next_child));
    }
    if (!parent) {
        fail("Parent parameter cannot be NULL", {}, VXCORE_LOCATION(in_next_child));
    }
    if (!m_current) {
        return nullptr;
    }
    if (m_currentPending && parent == m_current) {
        // The caller has the pending value from current(). Returning it again would make it a child
        // of itself, and a loop over documents would never end.
        m_currentPending = false;
    }
    ValuePtr value = next_value();
    while (value && value->m_parent != parent) {
        // The value is outside of `parent`, so it is kept for the next call.
        if (parent->m_depth >= value->m_depth) {
            m_currentPending = true;
            return nullptr;
        }
        value = next_value();
    }
    return value;
}

} // namespace vxjson
