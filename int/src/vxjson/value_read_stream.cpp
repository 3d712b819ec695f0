#include "vxcore/error_exception.h"
#include "vxjson/error_codes_internal.h"
#include "vxjson/reader_steps_internal.h"
#include "vxjson/value_read_stream_internal.h"

#include <algorithm>
#include <cstring>

namespace vxjson {

using Value = Reader::Value;

namespace {

constexpr char const * in_check_state = "Reader::Value::ValueReadStreamImpl::check_state()";
constexpr char const * in_read = "Reader::Value::ValueReadStreamImpl::read()";

} // namespace

unsigned int Value::ValueReadStreamImpl::read(void * buffer, unsigned int size) {
    ValuePtr const kept(&value()); // a failure makes the reader let go of it
    return kept->read_stream(static_cast<char *>(buffer), size);
}

unsigned int Value::ValueReadStreamImpl::skip(unsigned int size) {
    return read(nullptr, size);
}

long long Value::ValueReadStreamImpl::size() const {
    ValuePtr const kept(&value());
    return kept->stream_size();
}

/// The value. Raises if it is destroyed. The message then has no position, since the reader may be
/// destroyed too.
Value & Value::ValueReadStreamImpl::value() const {
    if (m_value == nullptr) {
        vxcore::throw_error(error::vxjson_reader_value,
                            vxcore::SourceString("The current value is no longer available", true),
                            VXCORE_LOCATION(in_check_state));
    }
    return *m_value;
}

void Value::check_stream_state() {
    if (m_state == eState_Failed) {
        m_reader->fail_after_error(error::vxjson_reader, VXCORE_LOCATION(in_check_state));
    }
}

long long Value::stream_size() {
    check_stream_state();
    switch (m_state) {
    case eState_StreamEnded:
        return 0;
    case eState_Loaded:
        return static_cast<long long>(m_data.view().size());
    default:
        return -1;
    }
}

unsigned int Value::read_stream(char * buffer, unsigned int size) {
    check_stream_state();
    if (m_state == eState_StreamEnded) {
        return 0;
    }
    try {
        if (m_state != eState_Streaming) {
            m_wasLoaded = m_state == eState_Loaded;
            m_state = eState_Streaming;
            // Text that `as_string` has loaded comes first. Without it the first piece is the next
            // token.
            m_streamPos = m_data.view().empty() ? sm_noPosition : 0;
        }
        return read_stream_pieces(buffer, size);
    } catch (...) {
        m_state = eState_Failed;
        throw;
    }
}

/// Reads `size` bytes, or the rest of the string. With a null buffer the bytes are skipped.
unsigned int Value::read_stream_pieces(char * buffer, unsigned int size) {
    unsigned int done = 0;
    while (done < size) {
        char * const room = buffer == nullptr ? nullptr : buffer + done;
        std::string_view const loaded = m_data.view();
        if (m_streamPos < loaded.size()) {
            done += take_piece(loaded, room, size - done);
            if (m_streamPos == loaded.size()) {
                m_data.clear();
                m_streamPos = sm_noPosition;
            }
        } else {
            if (has_stream_ended()) {
                break;
            }
            if (m_streamPos == sm_noPosition) {
                m_reader->next_token();
                m_streamPos = 0;
            }
            if (m_reader->m_token == eToken_StringBegin) { // a second one would repeat forever
                m_reader->fail_unexpected(VXCORE_LOCATION(in_read));
            }
            if (m_reader->m_token == eToken_CharData) {
                StringSlice slice;
                m_reader->m_tokenizer->text(slice);
                done += take_piece(slice.view(), room, size - done);
                if (m_streamPos >= slice.size()) {
                    m_streamPos = sm_noPosition;
                }
            }
        }
    }
    return done;
}

/// Copies `text` from m_streamPos on, at most `size` bytes. Returns the number of bytes copied.
unsigned int Value::take_piece(std::string_view text, char * buffer, unsigned int size) noexcept {
    std::string_view const piece =
        text.substr(std::min<std::size_t>(m_streamPos, text.size()), size);
    if (buffer != nullptr && !piece.empty()) {
        std::memcpy(buffer, piece.data(), piece.size());
    }
    auto const count = static_cast<unsigned int>(piece.size());
    m_streamPos += count;
    return count;
}

/// True when no more text comes from the tokenizer. A stream over loaded text never reads the
/// tokenizer. When the reader has left the value, the unread text is lost: the tokenizer would
/// return the text of another value.
bool Value::has_stream_ended() {
    if (!m_wasLoaded && m_reader->m_current != this && m_reader->m_failed) {
        m_reader->fail_after_error(error::vxjson_reader, VXCORE_LOCATION(in_check_state));
    }
    if (!m_wasLoaded && m_reader->m_current == this) {
        EToken const token = m_reader->m_token;
        if (token == eToken_StringBegin || token == eToken_CharData) {
            return false;
        }
        m_reader->m_tokenPushedBack = true;
    }
    m_state = eState_StreamEnded;
    return true;
}

} // namespace vxjson
