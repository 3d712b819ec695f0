#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/json/keys_internal.h"
#include "vxattribute/json/render_visitor_internal.h"
#include "vxattribute/json/text_writer_target_internal.h"
#include "vxattribute/json_marshaler.h"

#include <algorithm>
#include <cmath>

namespace vxattribute {

namespace impl {

namespace {

/// Doubles represent every integer up to this one, so any reader of JSON reads it exactly.
constexpr long long maxPlainInteger = 1LL << 53;

template <typename T>
std::span<T const> elements_of(AttributeValue const & value) {
    return {value.begin<T>(), value.end<T>()};
}

} // namespace

template <typename Writer>
JsonRenderVisitor<Writer>::JsonRenderVisitor(Writer writer, JsonTextOptions const & options)
    : m_writer(writer), m_sorted(options.sorted_names),
      m_plainDoubles(options.doubles == eJsonDoubles_Numbers),
      m_boxes(options.arrays == eJsonArrays_Boxed ? std::make_optional<BoxNames>() : std::nullopt),
      m_serializedName(jsonSerializedKey.get()) {}

template <typename Writer>
void JsonRenderVisitor<Writer>::write(AttributeValue const & value) {
    begin(value);
    while (!m_open.empty()) {
        next_element();
    }
}

/// Writes a value completely, or only its start when it is a value of plain maps.
template <typename Writer>
void JsonRenderVisitor<Writer>::begin(AttributeValue const & value) {
    switch (value.type().id()) {
    case ValueTypeId::eId_Null:
        m_writer.write_null();
        return;
    case ValueTypeId::eId_Boolean:
        if (auto const elements = elements_of<bool>(value); !elements.empty()) {
            write_elements(elements, [this](bool element) { m_writer.write_bool(element); });
            return;
        }
        break;
    case ValueTypeId::eId_Integer:
        // Checked before any is written: all elements must take the same form.
        if (auto const elements = elements_of<long long>(value);
            !elements.empty() &&
            std::all_of(elements.begin(), elements.end(),
                        [this](long long element) { return is_plain_integer(element); })) {
            write_elements(elements,
                           [this](long long element) { m_writer.write_integer(element); });
            return;
        }
        break;
    case ValueTypeId::eId_Double:
        if (m_plainDoubles && write_numbers(elements_of<double>(value))) {
            return;
        }
        break;
    case ValueTypeId::eId_String:
        write_elements(elements_of<std::string>(value),
                       [this](std::string const & element) { write_string(element); });
        return;
    case ValueTypeId::eId_AttributeMap:
        if (auto const maps = elements_of<AttributeMap>(value);
            !maps.empty() &&
            std::all_of(maps.begin(), maps.end(),
                        [this](AttributeMap const & map) { return is_plain(map); })) {
            m_boxes ? begin_boxed_maps(maps) : begin_maps(maps);
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

template <typename Writer>
template <typename T, typename Write>
void JsonRenderVisitor<Writer>::write_elements(std::span<T const> elements, Write write) {
    if (elements.size() == 1) {
        write(elements.front());
        return;
    }
    m_writer.begin_array();
    std::for_each(elements.begin(), elements.end(), write);
    m_writer.end_array();
}

/// Writes the elements unless one of them has no number in JSON, or there are none.
template <typename Writer>
bool JsonRenderVisitor<Writer>::write_numbers(std::span<double const> elements) {
    if (elements.empty() || !std::all_of(elements.begin(), elements.end(),
                                         [](double element) { return std::isfinite(element); })) {
        return false;
    }
    write_elements(elements, [this](double element) { m_writer.write_double(element); });
    return true;
}

template <typename Writer>
void JsonRenderVisitor<Writer>::write_string(std::string const & text) {
    m_writer.write_string(text.data(), vxcore::text_size(text.size()));
}

template <typename Writer>
bool JsonRenderVisitor<Writer>::is_plain_integer(long long number) const noexcept {
    return m_boxes || (-maxPlainInteger <= number && number <= maxPlainInteger);
}

template <typename Writer>
bool JsonRenderVisitor<Writer>::is_plain(AttributeMap const & map) const noexcept {
    // The empty name comes before all others: it has no address.
    return m_boxes || map.empty() || (!map.begin()->first.empty() && !map.exists(m_serializedName));
}

template <typename Writer>
void JsonRenderVisitor<Writer>::begin_maps(std::span<AttributeMap const> maps) {
    bool const isArray = maps.size() != 1;
    if (isArray) {
        m_writer.begin_array();
    }
    m_writer.begin_object();
    m_open.push_back({isArray ? eOpen_Objects : eOpen_Object,
                      ElementsCursor(maps.front(), m_sorted), maps.subspan(1)});
}

template <typename Writer>
void JsonRenderVisitor<Writer>::begin_boxed_maps(std::span<AttributeMap const> maps) {
    AttributeMap const & first = maps.front();
    if (maps.size() == 1 && !m_boxes->is_boxed_array(first)) {
        AttributeMap const * const object = m_boxes->boxed_object(first);
        begin_maps({object != nullptr ? object : &first, 1});
        return;
    }
    bool const areBoxes = std::all_of(maps.begin(), maps.end(), [this](AttributeMap const & map) {
        return m_boxes->is_box(map);
    });
    m_writer.begin_array();
    m_open.push_back({areBoxes ? eOpen_Boxes : eOpen_Maps, ElementsCursor(), maps});
}

/// Writes the next element of the innermost open object, or closes the object.
template <typename Writer>
void JsonRenderVisitor<Writer>::next_element() {
    OpenMaps & open = m_open.back();
    if (auto const * const element = open.elements.next()) {
        m_writer.write_name(element->first.data(), element->first.size());
        begin(element->second); // may invalidate `open`
        return;
    }
    if (open.kind <= eOpen_Objects) {
        m_writer.end_object();
    }
    if (!open.others.empty()) {
        begin_next_map();
        return;
    }
    if (open.kind != eOpen_Object) {
        m_writer.end_array();
    }
    m_open.pop_back();
}

/// Begins the next map of the innermost open array.
template <typename Writer>
void JsonRenderVisitor<Writer>::begin_next_map() {
    OpenMaps & open = m_open.back();
    AttributeMap const & map = open.others.front();
    open.others = open.others.subspan(1);
    switch (open.kind) {
    case eOpen_Boxes:
        begin(map.begin()->second);
        return;
    case eOpen_Maps:
        begin_boxed_maps({&map, 1});
        return;
    default:
        m_writer.begin_object();
        open.elements = ElementsCursor(map, m_sorted);
    }
}

template <typename Writer>
void JsonRenderVisitor<Writer>::write_serialized(AttributeValue const & value) {
    m_writer.begin_object();
    m_writer.write_name(m_serializedName.data(), m_serializedName.size());
    m_writer.begin_string();
    JsonStringTarget<Writer> target(m_writer);
    vxserialize::TextWriter writer(target, vxserialize::TextWriter::Options());
    write_attribute_value(writer, value, StreamOptions{m_sorted});
    writer.close();
    target.flush();
    m_writer.end_string();
    m_writer.end_object();
}

void write_json_value(vxjson::Writer & writer, AttributeValue const & value,
                      JsonTextOptions const & options) {
    if (vxjson::impl::TextOutput::takes_value(writer)) {
        vxjson::impl::TextOutput const output(static_cast<vxjson::TextWriter &>(writer));
        JsonRenderVisitor<vxjson::impl::TextOutput>(output, options).write(value);
    } else {
        JsonRenderVisitor<vxjson::Writer &>(writer, options).write(value);
    }
}

} // namespace impl

void write_attribute_value(vxjson::Writer & writer, AttributeValue const & value) {
    impl::write_json_value(writer, value, JsonTextOptions());
}

} // namespace vxattribute
