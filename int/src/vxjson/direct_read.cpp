#include "vxjson/direct_read_impl.h"

namespace vxjson::impl {

PlainText DirectRead::limits(Tokenizer::Options const & tokenizer,
                             Reader::Options const & reader) noexcept {
    return {nullptr,
            nullptr,
            tokenizer.max_depth,
            tokenizer.max_number_size,
            tokenizer.validate_utf8,
            reader.allow_reserved_names};
}

/// The place of the next token in the current container, and the depth before that token; null if
/// the reader has begun to read an unquoted name. The reader may have looked at one token.
char const * DirectRead::start(Reader const & reader, unsigned int & depth) noexcept {
    Tokenizer const & tokenizer = *reader.m_known;
    depth = tokenizer.m_depth;
    if (!reader.m_tokenPushedBack) {
        return tokenizer.m_mode == Tokenizer::eMode_Between ? tokenizer.m_cursor : nullptr;
    }
    char const * const at = tokenizer.m_text.data();
    switch (reader.m_token) {
    case eToken_Punctuator:
        depth += *at == '{' || *at == '[' ? -1u : *at == '}' || *at == ']' ? 1u : 0u;
        return at;
    case eToken_StringBegin:
    case eToken_True:
    case eToken_False:
    case eToken_Number:
    case eToken_Null:
        return at;
    default:
        return nullptr;
    }
}

bool DirectRead::begin(Reader const & reader, PlainText & text) noexcept {
    Tokenizer const * const tokenizer = reader.m_known;
    if (tokenizer == nullptr || !tokenizer->m_ended ||
        tokenizer->m_mode == Tokenizer::eMode_Failed || reader.m_failed || !reader.m_current ||
        (reader.m_current->type() != Reader::Value::eType_Object &&
         reader.m_current->type() != Reader::Value::eType_Array)) {
        return false;
    }
    text = limits(tokenizer->m_options, reader.m_options);
    unsigned int depth = 0;
    text.at = start(reader, depth);
    if (text.at == nullptr || depth == 0 || depth > text.maxDepth) {
        return false;
    }
    text.maxDepth -= depth - 1;
    return text.cut(tokenizer->m_limit);
}

void DirectRead::end(Reader & reader, char const * closing) noexcept {
    Tokenizer & tokenizer = *reader.m_known;
    unsigned int depth = 0;
    start(reader, depth);
    tokenizer.m_depth = depth;
    tokenizer.m_mode = Tokenizer::eMode_Between;
    tokenizer.m_cursor = closing;
    reader.m_tokenPushedBack = false;
    reader.m_currentPending = false;
}

} // namespace vxjson::impl
