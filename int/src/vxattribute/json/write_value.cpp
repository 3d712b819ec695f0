#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/json/keys_internal.h"
#include "vxattribute/json/render_visitor_internal.h"
#include "vxattribute/json/text_writer_target_internal.h"
#include "vxattribute/json_marshaler.h"

#include <algorithm>

namespace vxattribute {

namespace impl {

namespace {

/// Doubles represent every integer up to this one, so any reader of JSON reads it exactly.
constexpr long long maxPlainInteger = 1LL << 53;

bool is_plain_integer(long long number) noexcept {
    return -maxPlainInteger <= number && number <= maxPlainInteger;
}

} // namespace

JsonRenderVisitor::JsonRenderVisitor(vxjson::Writer & writer, bool sorted)
    : m_writer(writer), m_sorted(sorted), m_serializedName(jsonSerializedKey.get()),
      m_emptyName(jsonEmptyKey.get()) {}

void JsonRenderVisitor::write(AttributeValue const & value) {
    begin(value);
    while (!m_open.empty()) {
        next_element();
    }
}

/// Writes a value completely, or only its start when it is a value of plain maps.
void JsonRenderVisitor::begin(AttributeValue const & value) {
    unsigned int const size = value.size();
    switch (value.type().id()) {
    case ValueTypeId::eId_Null:
        m_writer.write_null();
        return;
    case ValueTypeId::eId_Boolean:
        if (size != 0) {
            write_elements<bool>(value, [this](bool element) { m_writer.write_bool(element); });
            return;
        }
        break;
    case ValueTypeId::eId_Integer:
        // Checked before any is written: all elements must take the same form.
        if (size != 0 &&
            std::all_of(value.begin<long long>(), value.end<long long>(), is_plain_integer)) {
            write_elements<long long>(
                value, [this](long long element) { m_writer.write_integer(element); });
            return;
        }
        break;
    case ValueTypeId::eId_String:
        write_elements<std::string>(value,
                                    [this](std::string const & element) { write_string(element); });
        return;
    case ValueTypeId::eId_AttributeMap:
        if (size != 0 && std::all_of(value.begin<AttributeMap>(), value.end<AttributeMap>(),
                                     [this](AttributeMap const & map) { return is_plain(map); })) {
            begin_maps(value);
            return;
        }
        break;
    default:
        break;
    }
    // Everything else might not read back as the same value. For example, an empty array reads as
    // String and a whole double as Integer.
    write_serialized(value);
}

template <typename T, typename Write>
void JsonRenderVisitor::write_elements(AttributeValue const & value, Write write) {
    T const * const first = value.begin<T>();
    T const * const last = value.end<T>();
    if (last - first == 1) {
        write(*first);
        return;
    }
    m_writer.begin_array();
    std::for_each(first, last, write);
    m_writer.end_array();
}

void JsonRenderVisitor::write_string(std::string const & text) {
    m_writer.write_string(text.data(), vxcore::text_size(text.size()));
}

bool JsonRenderVisitor::is_plain(AttributeMap const & map) const noexcept {
    return !map.exists(m_serializedName) && !map.exists(m_emptyName);
}

void JsonRenderVisitor::begin_maps(AttributeValue const & value) {
    AttributeMap const * const first = value.begin<AttributeMap>();
    AttributeMap const * const last = value.end<AttributeMap>();
    bool const isArray = last - first != 1;
    if (isArray) {
        m_writer.begin_array();
    }
    m_writer.begin_object();
    m_open.push_back({ElementsCursor(*first, m_sorted), first + 1, last, isArray});
}

/// Writes the next element of the innermost open object, or closes the object.
void JsonRenderVisitor::next_element() {
    OpenMaps & open = m_open.back();
    if (auto const * const element = open.elements.next()) {
        m_writer.write_name(element->first.data(), element->first.size());
        begin(element->second); // may invalidate `open`
        return;
    }
    m_writer.end_object();
    if (open.next != open.end) {
        m_writer.begin_object();
        open.elements = ElementsCursor(*open.next++, m_sorted);
        return;
    }
    if (open.isArray) {
        m_writer.end_array();
    }
    m_open.pop_back();
}

void JsonRenderVisitor::write_serialized(AttributeValue const & value) {
    m_writer.begin_object();
    m_writer.write_name(m_serializedName.data(), m_serializedName.size());
    m_writer.begin_string();
    TextWriterTarget target(m_writer);
    vxserialize::TextWriter writer(target, vxserialize::TextWriter::Options());
    write_attribute_value(writer, value, StreamOptions{m_sorted});
    writer.close();
    target.flush();
    m_writer.end_string();
    m_writer.end_object();
}

} // namespace impl

void write_attribute_value(vxjson::Writer & writer, AttributeValue const & value) {
    impl::JsonRenderVisitor(writer, false).write(value);
}

} // namespace vxattribute
