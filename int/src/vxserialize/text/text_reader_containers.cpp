#include "vxserialize/text/text_form_internal.h"
#include "vxserialize/text_reader.h"

/// The lists and records of TextReader.
namespace vxserialize {

using namespace impl::text;

/// Takes the count after the bracket of a list, if there is one. A number that no colon follows is
/// the first element, so it remains the next word.
unsigned int TextReader::take_count(bool & counted) {
    counted = false;
    if (!is_digit(peek_token())) {
        return 0;
    }
    scan_word();
    if (m_wordKind != eElement_Integer || peek() != ':') {
        return 0;
    }
    unsigned int count = 0;
    if (!parse_number(word(), count)) {
        fail_count("the count of a list is no number of 32 bits");
    }
    m_wordSize = 0;
    ++m_cursor;
    counted = true;
    return count;
}

/// Returns what `begin_list()` returns for an announced count. Each element needs a byte, so a
/// count above the remaining bytes is false. If the size of the stream is unknown, only the bytes
/// in the buffer are certain, and the result for a larger count is 0. Counts below 2 are not
/// reported, see docs/decisions/0004.
unsigned int TextReader::believed_count(unsigned int count) {
    auto const buffered = static_cast<unsigned long long>(m_limit - m_cursor);
    long long const unread = m_streamEnded ? 0 : m_stream.size();
    unsigned long long const known =
        buffered + (unread < 0 ? 0 : static_cast<unsigned long long>(unread));
    if (count + m_containers.pending() > known) {
        if (unread >= 0) {
            fail_count("a list announces more elements than the data can hold");
        }
        return 0;
    }
    return count < 2 ? 0 : count;
}

unsigned int TextReader::begin_list() {
    take_mark('[', eElement_List);
    m_containers.element();
    bool counted = false;
    unsigned int const count = take_count(counted);
    unsigned int const believed = counted ? believed_count(count) : 0;
    m_containers.begin_list(count, counted);
    return believed;
}

bool TextReader::has_next() {
    m_containers.check_in_list("vxserialize::TextReader::has_next()");
    impl::ReadContainers::Frame & list = m_containers.top();
    int c = peek_token();
    // After a comma another element must follow.
    if (list.touched && c == ',') {
        list.remaining -= list.remaining == 0 ? 0 : 1; // 0 if no count was announced
        list.touched = false;
        ++m_cursor;
        c = peek_token();
        if (c == ']') {
            fail("an element is missing");
        }
    }
    if (c == ']') {
        if (list.counted && list.remaining != (list.touched ? 1 : 0)) {
            fail_count("a list holds fewer elements than announced");
        }
        ++m_cursor;
        m_containers.close();
        return false;
    }
    if (c < 0) {
        fail_truncated();
    }
    if (list.touched || c == ',' || c == ')') {
        fail("',' or ']' is missing");
    }
    // Reported here, before the surplus element is read.
    if (list.counted && list.remaining == 0) {
        fail_count("a list holds more elements than announced");
    }
    return true;
}

void TextReader::begin_record() {
    take_mark('(', eElement_Record);
    m_containers.begin_record();
}

void TextReader::end_record() {
    m_containers.check_in_record("vxserialize::TextReader::end_record()");
    int const c = peek_token();
    if (c < 0) {
        fail_truncated();
    }
    if (c != ')') {
        fail("a record holds more than was read");
    }
    ++m_cursor;
    m_containers.close();
}

} // namespace vxserialize
