#include "vxserialize/text_reader.h"

#include "vxcore/default_floating_point.h"
#include "vxserialize/error_codes.h"
#include "vxserialize/failures_internal.h"
#include "vxserialize/memory_list_stream_internal.h"
#include "vxserialize/text_form_internal.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

namespace vxserialize {

using namespace impl::text;

namespace {

constexpr char const * class_name = "vxserialize::TextReader";

bool is_digit(int c) noexcept {
    return c >= '0' && c <= '9';
}

/// Reads all of `text` as a number of base 10.
template <typename T>
bool parse_number(std::string_view text, T & value) noexcept {
    char const * const end = text.data() + text.size();
    auto const result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() && result.ptr == end;
}

/// Reads the bits of a NaN from "nan(7ff8000000000001)".
bool parse_nan(std::string_view text, double & value) noexcept {
    constexpr std::string_view prefix = "nan(";
    if (text.size() != prefix.size() + 17 || text.substr(0, prefix.size()) != prefix) {
        return false;
    }
    unsigned long long bits = 0;
    char const * const digits = text.data() + prefix.size();
    auto const result = std::from_chars(digits, digits + 16, bits, 16);
    value = std::bit_cast<double>(bits);
    return result.ptr == digits + 16 && std::isnan(value);
}

bool parse_double(std::string_view text, double & value) noexcept {
    if (text == "inf" || text == "-inf") {
        double const infinity = std::numeric_limits<double>::infinity();
        value = text == "inf" ? infinity : -infinity;
        return true;
    }
    vxcore::impl::DefaultFloatingPoint const environment;
    return text.front() == 'n' ? parse_nan(text, value) : parse_number(text, value);
}

} // namespace

TextReader::TextReader(vxcore::IReadStream & stream, unsigned int size)
    : m_stream(stream), m_buffer(new char[std::max(size, 1u)]), m_bufferSize(std::max(size, 1u)) {
    m_cursor = m_limit = m_buffer.get();
}

TextReader::~TextReader() = default;

unsigned long long TextReader::offset() const noexcept {
    return m_received - static_cast<unsigned long long>(m_limit - m_cursor) - m_wordSize;
}

void TextReader::fail(char const * detail) const {
    impl::throw_data(error::vxserialize_data, class_name, offset(), detail);
}

void TextReader::fail_count(char const * detail) const {
    impl::throw_data(error::vxserialize_data_count, class_name, offset(), detail);
}

void TextReader::fail_truncated() const {
    impl::throw_truncated(class_name, m_received);
}

/// Gets more bytes once the buffer is used up. False at the end of the stream.
bool TextReader::refill() {
    if (m_streamEnded) {
        return false;
    }
    unsigned int const size = m_stream.read(m_buffer.get(), m_bufferSize);
    m_streamEnded = size < m_bufferSize; // a short read is the last one
    m_received += size;
    m_cursor = m_buffer.get();
    m_limit = m_cursor + size;
    return size != 0;
}

/// The next byte, which stays where it is; -1 at the end.
inline int TextReader::peek() {
    if (m_cursor == m_limit && !refill()) {
        return -1;
    }
    return static_cast<unsigned char>(*m_cursor);
}

/// The first byte of the next token.
int TextReader::peek_token() {
    if (m_wordSize != 0) {
        return static_cast<unsigned char>(m_word[0]);
    }
    int c = peek();
    while (is_char(c, eChar_Blank)) {
        ++m_cursor;
        c = peek();
    }
    return c;
}

/// A word that is too long keeps its first part, which is no element then.
void TextReader::add_to_word(int c) {
    m_word[m_wordSize++] = static_cast<char>(c);
    ++m_cursor;
}

/// Moves the number, name or time that the next byte starts to `m_word`, and finds its kind.
void TextReader::scan_word() {
    int const first = peek();
    bool const braces = first == '{';
    bool const time = first == '@';
    if (first < 0 || !(braces || time || is_char(first, eChar_Word))) {
        return;
    }
    add_to_word(first);
    int c = peek();
    while (m_wordSize < sm_maxWord && (is_char(c, eChar_Word) || (time && c == ':'))) {
        add_to_word(c);
        c = peek();
    }
    bool const nan = word() == "nan" && c == '(';
    while (nan && m_wordSize < 20 && (c == '(' || hex_value(c) >= 0)) {
        add_to_word(c);
        c = peek();
    }
    if (m_wordSize < sm_maxWord && ((braces && c == '}') || (nan && c == ')'))) {
        add_to_word(c);
    }
    m_wordKind = m_wordSize < sm_maxWord ? word_kind() : eElement_None;
}

EElementKind TextReader::word_kind() const noexcept {
    std::string_view const text = word();
    if (text == "null") {
        return eElement_Null;
    }
    if (text == "true" || text == "false") {
        return eElement_Boolean;
    }
    if (text.front() == '@') {
        return eElement_AbsoluteTime;
    }
    if (text.front() == '{') {
        return eElement_Uuid;
    }
    std::string_view const magnitude = text.substr(text.front() == '-' ? 1 : 0);
    if (magnitude.starts_with('P')) {
        return eElement_RelativeTime;
    }
    if (magnitude == "inf" || text.starts_with("nan(")) {
        return eElement_Double;
    }
    if (magnitude.empty() || !is_digit(magnitude.front())) {
        return eElement_None;
    }
    if (text.back() == 'u') {
        return eElement_Unsigned;
    }
    return text.find_first_of(".eE") == text.npos ? eElement_Integer : eElement_Double;
}

EElementKind TextReader::next_type() {
    switch (peek_token()) {
    case '<':
        return eElement_String;
    case '#':
        return eElement_Binary;
    case '[':
        return eElement_List;
    case '(':
        return eElement_Record;
    default:
        break;
    }
    if (m_wordSize == 0) {
        scan_word();
    }
    return m_wordSize == 0 ? eElement_None : m_wordKind;
}

std::string_view TextReader::peek_word(EElementKind kind) {
    EElementKind const found = next_type();
    if (found == kind) {
        return word();
    }
    if (m_wordSize == 0 && peek() < 0) {
        fail_truncated();
    }
    impl::throw_type(class_name, offset(), kind, found);
}

void TextReader::take_word() noexcept {
    m_wordSize = 0;
    m_containers.element();
}

/// Takes the first character of an element that has one of its own.
void TextReader::take_mark(char mark, EElementKind kind) {
    if (peek_token() != mark) {
        peek_word(kind); // raises
    }
    ++m_cursor;
}

void TextReader::read_null() {
    peek_word(eElement_Null);
    take_word();
}

bool TextReader::read_if_null() {
    if (next_type() != eElement_Null) {
        return false;
    }
    take_word();
    return true;
}

bool TextReader::read_bool() {
    bool const value = peek_word(eElement_Boolean) == "true";
    take_word();
    return value;
}

long long TextReader::read_integer() {
    long long value = 0;
    if (!parse_number(peek_word(eElement_Integer), value)) {
        fail("an integer that is no number of 64 bits");
    }
    take_word();
    return value;
}

unsigned int TextReader::read_uint() {
    std::string_view text = peek_word(eElement_Unsigned);
    text.remove_suffix(1);
    unsigned int value = 0;
    if (!parse_number(text, value)) {
        fail("an unsigned integer that is no number of 32 bits");
    }
    take_word();
    return value;
}

double TextReader::read_double() {
    double value = 0;
    if (!parse_double(peek_word(eElement_Double), value)) {
        fail("a double that is no number or beyond the range");
    }
    take_word();
    return value;
}

void TextReader::read_string(std::string & value) {
    take_mark('<', eElement_String);
    m_containers.element();
    value.clear();
    while (true) {
        char const * run = m_cursor;
        while (run != m_limit && is_char(static_cast<unsigned char>(*run), eChar_Plain)) {
            ++run;
        }
        value.append(m_cursor, run);
        m_cursor = run;
        int const c = peek();
        if (is_char(c, eChar_Plain)) {
            continue; // of the next buffer
        }
        if (c < 0) {
            fail_truncated();
        }
        if (c != '>' && c != '%') {
            fail("a character that must be escaped in a string");
        }
        ++m_cursor;
        if (c == '>') {
            return;
        }
        value.push_back(static_cast<char>(take_hex_pair()));
    }
}

vxcore::StringKey TextReader::read_string_key() {
    TextReader::read_string(m_text);
    return m_names.find(m_text);
}

vxcore::AbsoluteTime TextReader::read_absolute_time() {
    vxcore::AbsoluteTime value;
    if (!vxcore::AbsoluteTime::parse(peek_word(eElement_AbsoluteTime).substr(1), value)) {
        fail("no absolute time");
    }
    take_word();
    return value;
}

vxcore::RelativeTime TextReader::read_relative_time() {
    vxcore::RelativeTime value;
    if (!vxcore::RelativeTime::parse(peek_word(eElement_RelativeTime), value)) {
        fail("no relative time");
    }
    take_word();
    return value;
}

vxcore::Uuid TextReader::read_uuid() {
    vxcore::Uuid value;
    std::string_view const text = peek_word(eElement_Uuid).substr(1);
    if (!text.ends_with('}') || !vxcore::Uuid::parse(text.substr(0, text.size() - 1), value)) {
        fail("no UUID");
    }
    take_word();
    return value;
}

/// The byte of two hexadecimal digits.
unsigned char TextReader::take_hex_pair() {
    int value = 0;
    for (int i = 0; i < 2; ++i) {
        int const c = peek();
        if (c < 0) {
            fail_truncated();
        }
        if (hex_value(c) < 0) {
            fail("a hexadecimal digit is missing");
        }
        value = value * 16 + hex_value(c);
        ++m_cursor;
    }
    return static_cast<unsigned char>(value);
}

vxcore::RefCountPtr<MemoryList> TextReader::read_binary_as_memory_list() {
    take_mark('#', eElement_Binary);
    m_containers.element();
    vxcore::RefCountPtr<MemoryList> list = MemoryList::create();
    unsigned char bytes[256];
    unsigned int size = 0;
    while (hex_value(peek()) >= 0) {
        if (size == sizeof(bytes)) {
            list->append(bytes, size);
            size = 0;
        }
        bytes[size++] = take_hex_pair();
    }
    if (is_char(peek(), eChar_Word)) {
        fail("a character that is no hexadecimal digit");
    }
    list->append(bytes, size);
    return list;
}

ReadStreamPtr TextReader::read_binary() {
    vxcore::RefCountPtr<MemoryList> list = TextReader::read_binary_as_memory_list();
    MemoryListCursor const cursor = list->reader();
    unsigned int const size = list->size();
    return impl::create_memory_list_stream(std::move(list), cursor, size);
}

/// The count that may stand behind the bracket of a list. A number that no colon follows is the
/// first element, and waits as the next word.
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

/// What `begin_list()` gives for an announced count.
unsigned int TextReader::believed_count(unsigned int count) {
    auto const buffered = static_cast<unsigned long long>(m_limit - m_cursor);
    long long const unread = m_streamEnded ? 0 : m_stream.size();
    unsigned long long const known =
        buffered + (unread < 0 ? 0 : static_cast<unsigned long long>(unread));
    if (count + m_containers.owed() > known) {
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
    if (list.touched && c == ',') {
        list.remaining -= list.remaining == 0 ? 0 : 1; // 0 where none was announced
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
