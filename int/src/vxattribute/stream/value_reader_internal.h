#pragma once

#include "vxattribute/attribute_name_decoder.h"
#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/element_types.h"
#include "vxattribute/map/map_builder_internal.h"
#include "vxattribute/stream/bare_kind_internal.h"
#include "vxattribute/stream/list_room_internal.h"
#include "vxattribute/stream/marshaled_type_internal.h"
#include "vxserialize/error_info_stream.h"
#include "vxserialize/memory_reader_impl.h"

#include <typeinfo>

namespace vxattribute::impl {

/// Reads values and maps, with all that is nested in them.
///
/// @tparam Source  What the common elements are read from: `vxserialize::Reader &` for any reader,
///                 with a virtual call for each, or a view of a reader that has the same functions
///                 in line. Rare elements and coded names are read from the reader itself.
///
/// A holder owns the value that is being read, because the reader may raise at every step. Each
/// element type has functions of its own: the stack frame of one large function would be taken
/// again for each nested map.
template <typename Source>
class ValueReader {
  public:
    /// @param source   Reads from `reader`.
    /// @param decoder  Null for plain names.
    ValueReader(Source source, vxserialize::Reader & reader,
                IAttributeNameDecoder * decoder) noexcept
        : m_source(source), m_reader(reader), m_decoder(decoder),
          m_tokens(decoder != nullptr && typeid(*decoder) == typeid(AttributeNameDecoder)
                       ? static_cast<AttributeNameDecoder *>(decoder)
                       : nullptr) {}

    /// Of equal names the last value is kept.
    AttributeMap read_map() {
        unsigned int const count = m_source.begin_list();
        std::size_t const start = m_elements.size();
        if (start == 0) { // only the outermost map: exact room for each would be moved each time
            m_elements.reserve(list_room(count, maxRoomForMapElements));
        }
        while (m_source.has_next()) {
            m_elements.add(read_name());
            ValueHolder value = read_value();
            m_elements.last_value().swap_impl(value);
        }
        // An empty map takes one byte in a stream. With a holder of its own it would take 150 bytes
        // of memory, which a hostile stream could multiply.
        return m_elements.size() == start ? AttributeMap() : m_elements.take(start);
    }

    ValueHolder read_value() {
        vxserialize::EElementKind const kind = m_source.next_type();
        if (kind == vxserialize::eElement_Null) {
            m_source.read_null();
            return ValueHolder();
        }
        return with_bare_element_type(
            kind, [this]<typename T>() { return this->template read_lone_element<T>(); },
            [this] { return read_tagged(m_source.read_uint()); });
    }

  private:
    ValueHolder read_tagged(unsigned int tag) {
        ValueHolder result;
        if (tag == ValueTypeId::eId_Null) {
            return result;
        }
        bool const isKnown = tag < static_cast<unsigned int>(ValueTypeId::count) &&
                             for_element_type(static_cast<int>(tag),
                                              [&]<typename T>() { result = read_elements<T>(); });
        if (!isKnown) {
            throw_unknown_tag(tag, VXCORE_LOCATION("vxattribute::read_attribute_value_aux()"));
        }
        return result;
    }

    static constexpr bool is_in_line = !std::is_reference_v<Source>;

    template <typename T>
    static constexpr bool is_array_type = element_type_row<T>.list == eList_Array;

    template <typename T>
    [[gnu::noinline]] ValueHolder read_elements() {
        // One map is a list as well, so the kind of the next element cannot distinguish one map
        // from a list of maps. Maps therefore always come in a list.
        bool const isList =
            std::is_same_v<T, AttributeMap> || m_source.next_type() == vxserialize::eElement_List;
        if (!isList) {
            return read_lone_element<T>();
        }
        if constexpr (is_array_type<T>) {
            return read_array<T>();
        } else {
            return read_list<T>();
        }
    }

    template <typename T>
    ValueHolder read_lone_element() {
        if constexpr (is_array_type<T>) {
            return read_into_new<T>();
        } else {
            return read_scalar<T>();
        }
    }

    template <typename T>
    ValueHolder read_array() {
        auto * const array = new RefCountedValueImpl<T>;
        ValueHolder result(array);
        array->reserve(list_room(m_source.begin_list(), maxRoomForValues));
        while (m_source.has_next()) {
            read(array->push_back_default());
        }
        return result;
    }

    template <typename T>
    ValueHolder read_list() {
        unsigned int const count = m_source.begin_list();
        if (count > 1) {
            return read_counted_list<T>(count);
        }
        return count == 1 ? read_list_of_one<T>() : read_uncounted_list<T>();
    }

    template <typename T>
    ValueHolder read_counted_list(unsigned int count) {
        auto * const list = new RefCountedValueImpl<T>;
        ValueHolder result(list);
        list->reserve(list_room(count, maxRoomForValues));
        append_rest(*list);
        return result;
    }

    /// Only other implementations of Reader report a count of 1; our forms report 0 instead, see
    /// docs/decisions/0004. The end of the list is asked for only if the element is a map.
    template <typename T>
    ValueHolder read_list_of_one() {
        m_source.has_next();
        ValueHolder result = read_scalar<T>();
        if constexpr (std::is_same_v<T, AttributeMap>) {
            m_source.has_next();
        }
        return result;
    }

    /// A count of 0 means an empty list, or a form that does not store counts. Such a list may turn
    /// out to have one element, so the first is read aside: one element may have a smaller form.
    template <typename T>
    ValueHolder read_uncounted_list() {
        if (!m_source.has_next()) {
            return ValueHolder(ValueFactory<T>::create_value());
        }
        T first = read_new<T>();
        if (!m_source.has_next()) {
            return ValueHolder(ValueFactory<T>::create_value(first));
        }
        auto * const list = new RefCountedValueImpl<T>(first);
        ValueHolder result(list);
        append_rest(*list);
        return result;
    }

    template <typename T>
    void append_rest(RefCountedValueImpl<T> & list) {
        while (m_source.has_next()) {
            if constexpr (is_in_line && std::is_same_v<T, std::string>) {
                list.push_back(read_text());
            } else if constexpr (std::is_same_v<T, std::string> ||
                                 std::is_same_v<T, AttributeMap>) {
                // Read in their place, which saves a copy of each.
                read(list.push_back_default());
            } else {
                list.push_back(read_new<T>());
            }
        }
    }

    template <typename T>
    ValueHolder read_scalar() {
        if constexpr (std::is_same_v<T, std::string>) {
            return read_string();
        } else {
            T const element = read_new<T>();
            return ValueHolder(ValueFactory<T>::create_value(element));
        }
    }

    ValueHolder read_string() {
        if constexpr (is_in_line) {
            return ValueHolder(ValueFactory<std::string>::create_value(read_text()));
        } else {
            // Read in place: a long string is copied once. An empty one is a shared static.
            ValueHolder result = read_into_new<std::string>();
            auto const & typed = static_cast<TypedValue<std::string> const &>(*result.get());
            return typed.begin()->empty() ? ValueHolder(ValueFactory<std::string>::create_value(""))
                                          : std::move(result);
        }
    }

    /// For a source in line: the text where it lies.
    TextArg read_text() {
        std::string_view const text = m_source.read_text(m_joined);
        return TextArg(text.data(), static_cast<unsigned int>(text.size()));
    }

    template <typename T>
    ValueHolder read_into_new() {
        auto * const value = new RefCountedValueImpl<T>;
        ValueHolder result(value);
        read(value->push_back_default());
        return result;
    }

    AttributeName read_name() {
        if (m_decoder == nullptr) {
            if constexpr (is_in_line) {
                return AttributeName(m_source.read_string_key(m_joined));
            } else {
                return AttributeName(m_source.read_string_key());
            }
        }
        // A token of the usual decoder needs no call of it.
        if (m_tokens != nullptr && m_source.next_type() == vxserialize::eElement_Unsigned) {
            return m_tokens->name_of(m_source.read_uint());
        }
        return m_decoder->read_attribute_name(m_reader);
    }

    template <typename T>
    T read_new() {
        if constexpr (std::is_same_v<T, AttributeMap>) {
            return read_map();
        } else {
            T element{};
            read(element);
            return element;
        }
    }

    // The common elements come from the source, the others from the reader.

    void read(bool & element) { element = m_source.read_bool(); }

    void read(long long & element) { element = m_source.read_integer(); }

    void read(double & element) { element = m_source.read_double(); }

    void read(std::string & element) {
        if constexpr (is_in_line) {
            element.assign(m_source.read_text(m_joined));
        } else {
            m_source.read_string(element);
        }
    }

    void read(vxcore::AbsoluteTime & element) { element = m_source.read_absolute_time(); }

    void read(vxcore::RelativeTime & element) { element = m_source.read_relative_time(); }

    void read(AttributeMap & element) { element = read_map(); }

    template <typename T>
    void read(T & element) {
        m_reader >> element;
    }

    void read(vxuri::UriReference & element) { element = vxserialize::read_uri(m_reader); }

    void read(vxcore::SimpleDateTime & element) {
        element = vxserialize::read_simple_date_time(m_reader);
    }

    void read(BinaryValue & element) {
        if constexpr (is_in_line) {
            // Copied from where it lies, without a stream in between.
            std::string_view block;
            if (m_source.read_block_in_place(BinaryValue::max_stream_size, block)) {
                BinaryValue(reinterpret_cast<unsigned char const *>(block.data()),
                            static_cast<unsigned int>(block.size()))
                    .swap(element);
                return;
            }
        }
        read_binary_value(m_reader, element);
    }

    void read(SerializedValue & element) { read_serialized_value(m_reader, element); }

    void read(SecuredValue & element) { element.read(m_reader); }

    void read(ErrorInfoPtr & element) { element = vxserialize::read_error_info(m_reader); }

    Source m_source;
    vxserialize::Reader & m_reader;
    IAttributeNameDecoder * const m_decoder;
    AttributeNameDecoder * const m_tokens; // `m_decoder`, if it is the one of this library
    MapBuilder m_elements;                 // of the maps that are being read
    std::string m_joined;                  // a string that was in several segments
};

} // namespace vxattribute::impl
