#include "vxattribute/attribute.h"
#include "vxattribute/attribute_name_coder.h"
#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/trace_formatter.h"
#include "vxserialize/reader.h"
#include "vxserialize/writer.h"

#include <ostream>

namespace vxattribute {

void AttributeName::read(vxserialize::Reader & reader) {
    m_key = reader.read_string_key();
}

void AttributeName::read(vxserialize::Reader & reader, IAttributeNameDecoder & decoder) {
    *this = decoder.read_attribute_name(reader);
}

void AttributeName::write(vxserialize::Writer & writer) const {
    writer.write_string_key(m_key);
}

void AttributeName::write(vxserialize::Writer & writer, IAttributeNameEncoder & encoder) const {
    encoder.write_attribute_name(writer, *this);
}

std::ostream & operator<<(std::ostream & stream, AttributeName const & name) {
    name.key().write_trace(stream);
    return stream;
}

void Attribute::read(vxserialize::Reader & reader) {
    m_name.read(reader);
    read_attribute_value(reader, m_value);
}

void Attribute::read(vxserialize::Reader & reader, IAttributeNameDecoder & decoder) {
    m_name.read(reader, decoder);
    read_attribute_value(reader, m_value);
}

void Attribute::write(vxserialize::Writer & writer) const {
    m_name.write(writer);
    write_attribute_value(writer, m_value);
}

void Attribute::write(vxserialize::Writer & writer, IAttributeNameEncoder & encoder) const {
    m_name.write(writer, encoder);
    write_attribute_value(writer, m_value);
}

std::ostream & operator<<(std::ostream & stream, Attribute const & attribute) {
    stream << '\'' << attribute.name() << "' => ";
    attribute.value().write_trace(stream, defaultTraceFormatter, 0);
    return stream;
}

} // namespace vxattribute
