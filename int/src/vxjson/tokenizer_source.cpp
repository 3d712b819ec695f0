#include "vxcore/hex.h"
#include "vxcore/text_conversion.h"
#include "vxjson/error_codes_internal.h"
#include "vxjson/position_message_internal.h"
#include "vxjson/tokenizer.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace vxjson {

namespace {

unsigned int clamp(unsigned long long number) noexcept {
    return static_cast<unsigned int>(
        std::min<unsigned long long>(number, std::numeric_limits<unsigned int>::max()));
}

/// The byte as shown in messages.
std::string byte_text(char c) {
    auto const byte = static_cast<unsigned char>(c);
    if (byte > 0x20 && byte < 0x7F) {
        return {'\'', c, '\''};
    }
    return std::string("byte 0x") + vxcore::upper_hex_digit(byte >> 4) +
           vxcore::upper_hex_digit(byte);
}

} // namespace

/// Refills until `size` bytes are available at the cursor, or the text ends.
void Tokenizer::require(std::size_t size) {
    while (static_cast<std::size_t>(m_limit - m_cursor) < size && refill()) {
    }
}

/// Reads more bytes from the stream. The unread bytes move to the start of the buffer, so pointers
/// into the buffer become invalid. False at the end of the text and when the stream fails.
bool Tokenizer::refill() {
    if (m_ended) {
        return false;
    }
    auto const kept = static_cast<std::size_t>(m_limit - m_cursor);
    count_lines();
    try {
        if (kept == m_capacity) {
            grow();
        } else {
            std::memmove(m_buffer.get(), m_cursor, kept);
        }
        m_base = offset(m_cursor);
        m_begin = m_cursor = m_counted = m_buffer.get();
        m_limit = m_begin + kept;
        auto const room = static_cast<unsigned int>(m_capacity - kept);
        // Limited, so that a faulty stream cannot move the limit out of the buffer.
        unsigned int const size = std::min(m_stream->read(m_buffer.get() + kept, room), room);
        m_limit += size;
        m_ended = size < room;
        return size != 0;
    } catch (std::exception const & e) {
        fail_stream(&e);
    } catch (...) {
        fail_stream(nullptr);
    }
    return false;
}

/// Doubles the buffer when a single token fills it.
void Tokenizer::grow() {
    std::unique_ptr<char[]> buffer(new char[m_capacity * 2]);
    std::memcpy(buffer.get(), m_cursor, m_capacity);
    m_base = offset(m_cursor);
    m_buffer = std::move(buffer);
    m_begin = m_cursor = m_buffer.get();
    m_capacity *= 2;
}

/// The place of the current token in the whole text, in bytes.
unsigned long long Tokenizer::token_offset() const noexcept {
    return m_text.data() == m_scratch ? m_decodedOffset : offset(m_text.data());
}

/// Counts the lines up to the cursor. Each line feed before it ends one: strings have none. Lines
/// are counted only for a position and when the buffer loses text, since few callers ask.
void Tokenizer::count_lines() noexcept {
    while (m_counted != m_cursor) {
        void const * const feed =
            std::memchr(m_counted, '\n', static_cast<std::size_t>(m_cursor - m_counted));
        if (feed == nullptr) {
            m_counted = m_cursor;
            return;
        }
        m_counted = static_cast<char const *>(feed) + 1;
        m_lineStart = offset(m_counted);
        ++m_line;
    }
}

void Tokenizer::position(SourcePosition & out) {
    count_lines();
    unsigned long long const at = m_mode == eMode_Failed ? m_errorOffset : token_offset();
    out.uri = m_options.uri;
    out.line = clamp(m_line);
    out.linePos = clamp(at - m_lineStart + 1);
    out.sourcePos = clamp(at);
}

void Tokenizer::set_error(vxcore::ErrorCode const & code, char const * message,
                          vxcore::ErrorParams params, vxcore::ErrorInfo::Ptr nested) {
    SourcePosition place;
    position(place);
    m_error = impl::create_positioned(code, message, std::move(params),
                                      VXCORE_LOCATION("vxjson::Tokenizer::next()"), place,
                                      std::move(nested));
}

/// @param expected  Describes what is required at `at`.
EToken Tokenizer::fail(char const * at, char const * expected) {
    if (m_mode == eMode_Failed) {
        return eToken_Error; // the stream failed, which looked like the end of the text
    }
    m_mode = eMode_Failed;
    m_errorOffset = offset(at);
    vxcore::ErrorParams params;
    params.insert_ref(vxcore::SourceString("expected", true)) = expected;
    params.insert_ref(vxcore::SourceString("found", true)) =
        at == m_limit ? "the end of the text" : byte_text(*at);
    set_error(error::vxjson_reader_tokenizer_syntaxError, "Expected {@expected} and found {@found}",
              std::move(params), nullptr);
    return eToken_Error;
}

EToken Tokenizer::fail_limit(char const * at, char const * message, unsigned int limit) {
    m_mode = eMode_Failed;
    m_errorOffset = offset(at);
    vxcore::ErrorParams params;
    params.insert_ref(vxcore::SourceString("limit", true)) = vxcore::to_string(limit);
    set_error(error::vxjson_reader_tokenizer_syntaxError, message, std::move(params), nullptr);
    return eToken_Error;
}

/// @param cause  Null for exceptions not derived from std::exception.
void Tokenizer::fail_stream(std::exception const * cause) {
    m_mode = eMode_Failed;
    m_ended = true;
    m_errorOffset = offset(m_limit);
    vxcore::ErrorInfo::Ptr nested;
    if (cause != nullptr) {
        nested =
            vxcore::ErrorInfo::from_exception(*cause, VXCORE_LOCATION("vxjson::Tokenizer::next()"));
    }
    set_error(error::vxjson_reader_tokenizer_stream, "The text cannot be read further", {},
              std::move(nested));
}

} // namespace vxjson
