#include "vxjson/reader.h"

#include "vxjson/error_codes_internal.h"
#include "vxjson/number_text_internal.h"
#include "vxjson/reader_steps_internal.h"

#include <new>

namespace vxjson {

namespace {

constexpr char const * in_next_child = "vxjson::Reader::next_child()";

} // namespace

Reader::Reader(ITokenizer & tokenizer) : Reader(tokenizer, Options()) {}

Reader::Reader(ITokenizer & tokenizer, Options const & options)
    : Reader(tokenizer, dynamic_cast<Tokenizer *>(&tokenizer), options) {}

Reader::Reader(Tokenizer & tokenizer) : Reader(tokenizer, Options()) {}

Reader::Reader(Tokenizer & tokenizer, Options const & options)
    : Reader(tokenizer, &tokenizer, options) {}

Reader::Reader(ITokenizer & tokenizer, Tokenizer * known, Options const & options)
    : m_tokenizer(&tokenizer), m_known(known),
      m_lends(known != nullptr && known->m_stream == nullptr), m_root(new Value(*this, nullptr)),
      m_current(m_root.get()), m_options(options) {}

Reader::~Reader() {
    drop_values();
}

/// Leaves the current value and all its ancestors, of which callers may hold some.
void Reader::drop_values() noexcept {
    while (m_current != nullptr) {
        leave_value();
    }
    m_root.reset();
}

/// Replaces the object in `place`, which is missing or is held by somebody else. The new one takes
/// over the objects for deeper values.
Reader::Value & Reader::make_value(ValuePtr & place) {
    ValuePtr value(new Value(*this, m_current));
    if (place && place->m_inner) {
        value->m_inner = std::move(place->m_inner);
        value->m_inner->m_parent = value.get();
    }
    place = std::move(value);
    return *place;
}

Reader::ValuePtr Reader::next_value() {
    if (m_failed) {
        fail_after_error(error::vxjson_reader, VXCORE_LOCATION("vxjson::Reader::next_value()"));
    }
    if (m_current == nullptr || m_currentPending) {
        m_currentPending = false;
        return current();
    }
    try {
        if (m_token != eToken_Number || !advance_to_number()) {
            advance();
        }
        return current();
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
    if (m_current == nullptr) {
        return nullptr;
    }
    if (m_currentPending && parent.get() == m_current) {
        // The caller has the pending value from current(). Returning it again would make it a child
        // of itself, and a loop over documents would never end.
        m_currentPending = false;
    }
    ValuePtr value = next_value();
    while (value && value->m_parent != parent.get()) {
        // The value is outside of `parent`, so it is kept for the next call.
        if (parent->m_depth >= value->m_depth) {
            m_currentPending = true;
            return nullptr;
        }
        value = next_value();
    }
    return value;
}

bool Reader::next_number(ValuePtr const & array, double & number) {
    if (m_failed || m_currentPending || m_current == nullptr || !array ||
        array->m_type != Value::eType_Array) {
        return false;
    }
    bool const isAfterNumber =
        m_current->m_type == Value::eType_Number && m_current->m_parent == array.get();
    if (!isAfterNumber && m_current != array.get()) {
        return false;
    }
    bool const isNumber = next_token() == eToken_Number;
    m_tokenPushedBack = true;
    if (!isNumber) {
        return false;
    }
    if (isAfterNumber) {
        leave_value();
    }
    vxcore::ErrorInfo::Ptr failure; // dropped: next_child() reports it through the value
    double const value = impl::read_number(token_text(), &failure);
    if (failure) {
        return false;
    }
    m_tokenPushedBack = false;
    try {
        consume_comma();
    } catch (std::bad_alloc const &) {
        m_failed = true; // a token is lost
        throw;
    }
    number = value;
    return true;
}

} // namespace vxjson
