#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/json/direct_reader_internal.h"
#include "vxattribute/json/element_values_internal.h"
#include "vxattribute/make_value.h"
#include "vxattribute/multi_value_writer.h"
#include "vxcore/read_stream.h"
#include "vxserialize/text_reader.h"

#include <charconv>
#include <cmath>

namespace vxattribute::impl {

namespace {

using vxjson::impl::NumberScan;

/// The nearest double to the valid number in [start, end). False beyond the range.
[[gnu::noinline]] bool convert_double(char const * start, char const * end,
                                      double & value) noexcept {
    return std::from_chars(start, end, value).ec == std::errc();
}

/// A stream over a text in memory.
class TextStream final : public vxcore::IReadStream {
  public:
    explicit TextStream(std::string_view text) noexcept : m_text(text) {}

    unsigned int read(void * buffer, unsigned int size) override {
        auto const count =
            static_cast<unsigned int>(m_text.copy(static_cast<char *>(buffer), size));
        m_text.remove_prefix(count);
        return count;
    }

    unsigned int skip(unsigned int size) override {
        auto const count = static_cast<unsigned int>(std::min<std::size_t>(m_text.size(), size));
        m_text.remove_prefix(count);
        return count;
    }

    long long size() const override { return static_cast<long long>(m_text.size()); }

  private:
    std::string_view m_text;
};

/// Reads a text that is one number, as most in "vxserialize" are. False for all others, and for
/// those that TextReader refuses.
bool read_serialized_number(std::string_view text, AttributeValue & value) {
    constexpr std::size_t maxWord = 127;     // in bytes, for TextReader
    constexpr std::ptrdiff_t maxDigits = 18; // they fit 64 bits
    char const * const end = text.data() + text.size();
    NumberScan const scan = vxjson::impl::scan_number(text.data(), end);
    if (scan.expected != nullptr || scan.end != end || text.size() > maxWord) {
        return false;
    }
    if (text.find_first_of(".eE") == text.npos) {
        if (scan.digitCount > maxDigits) {
            return false;
        }
        auto const magnitude = static_cast<long long>(scan.digits);
        value = AttributeValue(scan.isNegative ? -magnitude : magnitude);
        return true;
    }
    double number = 0;
    bool const isInRange =
        vxjson::impl::exact_double(scan, number) || convert_double(text.data(), end, number);
    value = AttributeValue(number);
    return isInRange;
}

/// Reads the text in a "vxserialize" property. Whatever is wrong with it is reported by the other
/// reader, which reads it again.
bool read_serialized(std::string_view text, AttributeValue & value) {
    constexpr std::size_t maxBuffer = 4096; // in bytes
    if (read_serialized_number(text, value)) {
        return true;
    }
    try {
        TextStream stream(text);
        vxserialize::TextReader reader(stream,
                                       static_cast<unsigned int>(std::min(text.size(), maxBuffer)));
        read_attribute_value(reader, value);
        return true;
    } catch (std::exception const &) {
        return false;
    }
}

} // namespace

/// Reads a scalar of an object into `value`, which is null.
bool DirectReader::take_scalar(AttributeValue & value) {
    switch (m_cursor.peek()) {
    case '"': {
        std::string_view text;
        m_cursor.skip(1);
        if (!m_cursor.take_string(text)) {
            return false;
        }
        TextArg const argument(text.data(), static_cast<unsigned int>(text.size()));
        set_value(value, ValueFactory<std::string>::create_value(argument));
        return true;
    }
    case 't':
        set_value(value, ValueFactory<bool>::create_value(true));
        return m_cursor.take_word("true");
    case 'f':
        set_value(value, ValueFactory<bool>::create_value(false));
        return m_cursor.take_word("false");
    case 'n':
        return m_cursor.take_word("null");
    default:
        Number number;
        if (!take_number(number)) {
            return false;
        }
        set_value(value, number.isInteger
                             ? static_cast<ValueBase *>(
                                   ValueFactory<long long>::create_value(number.integer))
                             : ValueFactory<double>::create_value(number.value));
        return true;
    }
}

/// Short integers, which are the most frequent numbers, are not converted to a double and back.
inline bool DirectReader::take_number(Number & number) {
    constexpr std::ptrdiff_t exactDigits = 15; // a double represents all these integers
    char const * const start = m_cursor.at();
    NumberScan const scan = m_cursor.scan_number();
    if (!m_cursor.take(scan)) {
        return false;
    }
    number.isNegative = scan.isNegative;
    if (scan.exponent == 0 && scan.digitCount <= exactDigits) {
        auto const magnitude = static_cast<long long>(scan.digits);
        number.integer = scan.isNegative ? -magnitude : magnitude;
        number.value = static_cast<double>(magnitude);
        number.value = scan.isNegative ? -number.value : number.value;
        number.isInteger = true;
        return true;
    }
    if (!vxjson::impl::exact_double(scan, number.value) &&
        !convert_double(start, scan.end, number.value)) {
        return false;
    }
    number.isInteger = is_integer(number.value);
    number.integer = number.isInteger ? static_cast<long long>(number.value) : 0;
    return true;
}

/// Reads a "vxserialize" object from the value of its first property on.
DirectReader::EStep DirectReader::take_serialized() {
    std::string_view text;
    if (!m_cursor.take('"') || !m_cursor.take_string(text) || !read_serialized(text, m_value)) {
        return EStep::eRefused;
    }
    m_cursor.skip_space();
    if (!m_cursor.take('}')) {
        return EStep::eRefused; // further properties, which are dropped
    }
    m_open.pop_back();
    return after_container();
}

/// Reads an array that is empty or has scalars into m_value, after its bracket.
bool DirectReader::take_scalars() {
    switch (m_cursor.peek()) {
    case ']':
        m_cursor.skip(1);
        m_value = AttributeValue(ValueTypeId::typeString);
        return true;
    case '"':
        return take_strings();
    case 't':
    case 'f':
        return take_booleans();
    default:
        return take_numbers();
    }
}

bool DirectReader::take_strings() {
    m_strings.clear();
    do {
        std::string_view text;
        if (!m_cursor.take('"') || !m_cursor.take_string(text)) {
            return false;
        }
        m_strings.emplace_back(text);
    } while (m_cursor.take_comma());
    if (m_strings.size() == 1) {
        m_value = AttributeValue(m_strings.front());
    } else {
        auto * const list = new RefCountedValueImpl<std::string>;
        set_value(m_value, list);
        list->reserve(static_cast<unsigned int>(m_strings.size()));
        for (std::string & string : m_strings) {
            list->push_back_default() = std::move(string);
        }
    }
    return m_cursor.take(']');
}

/// The array is Integer only if all its numbers are whole. At the first other one, the numbers so
/// far become doubles.
bool DirectReader::take_numbers() {
    m_integers.clear();
    m_doubles.clear();
    bool hasNegativeZero = false;
    do {
        Number number;
        if (!take_number(number)) {
            return false;
        }
        if (number.isInteger && m_doubles.empty()) {
            m_integers.push_back(number.integer);
            hasNegativeZero = hasNegativeZero || (number.isNegative && number.integer == 0);
            continue;
        }
        if (m_doubles.empty()) {
            if (hasNegativeZero) {
                return false; // rare: a double has a sign that its integer has lost
            }
            m_doubles.assign(m_integers.begin(), m_integers.end());
        }
        m_doubles.push_back(number.value);
    } while (m_cursor.take_comma());
    m_value = m_doubles.empty() ? make_list<long long>(m_integers) : make_list<double>(m_doubles);
    return m_cursor.take(']');
}

bool DirectReader::take_booleans() {
    m_value.set_null();
    auto list = m_value.multivalue_writer<bool>();
    do {
        bool const element = m_cursor.peek() == 't';
        if (!m_cursor.take_word(element ? "true" : "false")) {
            return false;
        }
        list.push_back(element);
    } while (m_cursor.take_comma());
    return m_cursor.take(']');
}

} // namespace vxattribute::impl
