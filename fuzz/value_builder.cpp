#include "value_builder.h"

#include "vxserialize/memory_reader.h"
#include "vxserialize/memory_writer.h"

#include <bit>
#include <iterator>
#include <vector>

namespace vxfuzz {

using namespace vxattribute;

namespace {

/// Maps nested deeper than this are empty. The target round_trip and the seeds "nested" of
/// binary_read and text_read test deep nesting at less cost.
constexpr unsigned int maxDepth = 12;

constexpr unsigned int maxElements = 40;

} // namespace

int ValueBuilder::type() {
    return static_cast<int>(1 + m_input.below(ValueTypeId::count - 1));
}

AttributeValue ValueBuilder::value() {
    AttributeValue result;
    if (m_input.below(16) != 15) {
        impl::for_element_type(type(), [&]<typename T>() { result = value_of<T>(); });
    }
    return result;
}

/// Builds a scalar or a list. Some lists are filled by a writer, others are a subrange of such a
/// one.
template <typename T>
AttributeValue ValueBuilder::value_of() {
    unsigned int const form = m_input.below(8);
    if (form < 5) {
        T element{};
        build(element);
        return AttributeValue(element);
    }
    AttributeValue result(impl::ValueTypeTraits<T>::type());
    for (unsigned int left = m_input.below(maxElements); left != 0 && !m_input.at_end(); --left) {
        T element{};
        build(element);
        result.multivalue_writer<T>().push_back(element);
    }
    return form == 5 || result.size() == 0 ? result : result.subrange(0, result.size() / 2 + 1);
}

void ValueBuilder::build(bool & element) {
    element = m_input.below(2) != 0;
}

void ValueBuilder::build(long long & element) {
    element = m_input.number();
}

void ValueBuilder::build(std::string & element) {
    element = m_input.text(m_input.below(8) == 7 ? 255 : 20);
}

/// Builds a double from any bits or, every other time, a multiple of 1/8.
void ValueBuilder::build(double & element) {
    bool const isPlain = m_input.below(2) == 0;
    long long const number = m_input.number();
    element = isPlain ? static_cast<double>(number) / 8 : std::bit_cast<double>(number);
}

void ValueBuilder::build(vxcore::Uuid & element) {
    vxcore::Uuid::BinaryData data;
    for (unsigned char & byte : data) {
        byte = m_input.byte();
    }
    element = vxcore::Uuid(data);
}

void ValueBuilder::build(vxuri::UriReference & element) {
    static char const * const starts[] = {"", "http://", "//h:1", "a?b#c%2F"};
    unsigned int const start = m_input.below(5);
    element = start == 4 ? vxuri::UriReference()
                         : vxuri::UriReference::parse(starts[start] + m_input.text(12));
}

void ValueBuilder::build(vxcore::AbsoluteTime & element) {
    element = vxcore::AbsoluteTime(m_input.number());
}

void ValueBuilder::build(vxcore::RelativeTime & element) {
    element = vxcore::RelativeTime(m_input.number());
}

void ValueBuilder::build(vxcore::SimpleDateTime & element) {
    element = vxcore::SimpleDateTime(m_input.number());
}

void ValueBuilder::build(BinaryValue & element) {
    std::string const bytes = m_input.text(m_input.below(8) == 7 ? 255 : 30);
    element.set(reinterpret_cast<unsigned char const *>(bytes.data()),
                static_cast<unsigned int>(bytes.size()));
}

/// Builds a value without a payload, or with one in two segments.
void ValueBuilder::build(SerializedValue & element) {
    std::string const type = m_input.text(6);
    if (m_input.below(4) == 0) {
        element.set(type, nullptr);
        return;
    }
    auto list = vxserialize::MemoryList::create();
    for (int i = 0; i < 2; ++i) {
        std::string const bytes = m_input.text(20);
        list->append(*vxserialize::MemoryList::create(bytes.data(),
                                                      static_cast<unsigned int>(bytes.size())));
    }
    element.set(type, std::move(list));
}

vxcore::SourceString ValueBuilder::source_text() {
    return vxcore::SourceString(std::string_view(m_input.text(10)));
}

vxcore::ErrorParams ValueBuilder::params() {
    vxcore::ErrorParams params;
    for (unsigned int left = m_input.below(4); left != 0; --left) {
        vxcore::SourceString name = source_text();
        params.insert_ref(std::move(name)) = m_input.text(10);
    }
    return params;
}

/// Builds a sealed value as anybody may write it. It need not open.
void ValueBuilder::build(SecuredValue & element) {
    static char const * const ciphers[] = {"EAX_AES128", "EAX_AES256", "NULL", ""};
    vxserialize::MemoryWriter writer;
    writer.begin_record();
    writer << m_input.text(6) << std::string(ciphers[m_input.below(4)]);
    SecuredValue::KeyId(m_input.text(4), vxcore::Uuid()).write(writer);
    std::string const bytes = m_input.text(50);
    writer.write_binary(bytes.data(), static_cast<unsigned int>(bytes.size()));
    writer.end_record();
    vxserialize::MemoryReader reader = writer.reader();
    element.read(reader);
}

void ValueBuilder::build(impl::ErrorInfoPtr & element) {
    element = nullptr;
    for (unsigned int links = m_input.below(5); links != 0; --links) {
        vxcore::SourceString code = source_text();
        vxcore::SourceString message = source_text();
        vxcore::ErrorParams values = params();
        vxcore::SourceString function = source_text();
        vxcore::SourceString file = source_text();
        element = vxcore::ErrorInfo::create_with_own_code(
            std::move(code), std::move(message), std::move(values),
            vxcore::SourceLocation(std::move(function), std::move(file), m_input.byte()),
            std::move(element));
    }
}

void ValueBuilder::build(AttributeMap & element) {
    static char const * const names[] = {"", "a", "b", "name", "another name", "port", "host"};
    MutableAttributeMap map;
    unsigned int left = m_depth < maxDepth ? m_input.below(10) : 0;
    for (++m_depth; left != 0 && !m_input.at_end(); --left) {
        unsigned int const name = m_input.below(8);
        AttributeName const key =
            name < std::size(names) ? AttributeName(names[name]) : AttributeName(m_input.text(12));
        map.add(key, value());
    }
    --m_depth;
    element = std::move(map);
}

} // namespace vxfuzz
