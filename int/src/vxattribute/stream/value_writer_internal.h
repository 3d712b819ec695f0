#pragma once

#include "vxattribute/attribute_name_encoder.h"
#include "vxattribute/element_types.h"
#include "vxattribute/sorted_by_name.h"
#include "vxattribute/stream/bare_kind_internal.h"
#include "vxserialize/error_info_stream.h"
#include "vxserialize/memory_writer_impl.h"

#include <typeinfo>

namespace vxattribute::impl {

/// Writes values and maps, with all that is nested in them.
///
/// @tparam Sink  What the common elements are written to: `vxserialize::Writer &` for any writer,
///               with a virtual call for each, or a view of a writer that has the same functions in
///               line. Rare elements and coded names are written to the writer itself.
template <typename Sink>
class ValueWriter {
  public:
    using Element = AttributeMapBase::value_type;

    /// @param sink     Writes to `writer`.
    /// @param encoder  Null for plain names.
    /// @param sortedNames  Sorts the elements of each map by the bytes of their names.
    ValueWriter(Sink sink, vxserialize::Writer & writer, IAttributeNameEncoder * encoder,
                bool sortedNames) noexcept
        : m_sink(sink), m_writer(writer), m_encoder(encoder),
          m_tokens(encoder != nullptr && typeid(*encoder) == typeid(AttributeNameEncoder)
                       ? static_cast<AttributeNameEncoder *>(encoder)
                       : nullptr),
          m_sortedNames(sortedNames) {}

    void write_value(AttributeValue const & value) {
        if (value.is_null()) {
            m_sink.write_null();
            return;
        }
        for_element_type(value.type().id(),
                         [&]<typename T>() { write_elements(value.begin<T>(), value.end<T>()); });
    }

    void write_map(AttributeMapBase const & map) {
        if (m_sortedNames) {
            write_list(sorted_by_name(map));
        } else {
            write_list(map);
        }
    }

    /// Writes a map, as a list of its elements. JSON and rendering go through ElementsCursor for
    /// this; here its test per element would take 3 % of the instructions of a binary write.
    ///
    /// @param elements  A map, the tree in its holder, or iterators into it.
    template <typename Elements>
    void write_list(Elements const & elements) {
        m_sink.begin_list(static_cast<unsigned int>(elements.size()));
        auto const first = elements.begin();
        auto const last = elements.end();
        for (auto position = first; position != last; ++position) {
            if (position != first) {
                m_sink.next_list_item();
            }
            write_element(element_at(position));
        }
        m_sink.end_list();
    }

    /// Writes a name and a value.
    void write_element(Element const & element) {
        write_name(element.first);
        write_value(element.second);
    }

  private:
    using MapIterator = AttributeMapBase::const_iterator;

    static Element const & element_at(MapIterator position) noexcept { return *position; }

    static Element const & element_at(std::vector<MapIterator>::const_iterator position) noexcept {
        return **position;
    }

    void write_name(AttributeName const & name) {
        unsigned int token = 0;
        if (m_encoder == nullptr) {
            m_sink.write_string_key(name.key());
        } else if (m_tokens == nullptr) {
            m_encoder->write_attribute_name(m_writer, name);
        } else if (m_tokens->find_token(name, token)) {
            m_sink.write_uint(token);
        } else {
            m_tokens->write_other_name(m_writer, name);
        }
    }

    template <typename T>
    void write_elements(T const * first, T const * last) {
        // One map is written as a list of one: a map is a list itself, so readers could not tell a
        // lone map from a list of maps.
        bool const isScalar = last - first == 1 && !std::is_same_v<T, AttributeMap>;
        if (!isScalar || bare_kind<T> == vxserialize::eElement_None) {
            m_sink.write_uint(static_cast<unsigned int>(ValueTypeTraits<T>::type().id()));
        }
        if (isScalar) {
            write(*first);
            return;
        }
        m_sink.begin_list(static_cast<unsigned int>(last - first));
        for (T const * p = first; p != last; ++p) {
            if (p != first) {
                m_sink.next_list_item();
            }
            write(*p);
        }
        m_sink.end_list();
    }

    // The common elements go to the sink, the others to the writer.

    void write(bool element) { m_sink.write_bool(element); }

    void write(long long element) { m_sink.write_integer(element); }

    void write(double element) { m_sink.write_double(element); }

    void write(std::string const & element) {
        m_sink.write_string(element.data(), vxcore::text_size(element.size()));
    }

    void write(vxcore::AbsoluteTime element) { m_sink.write_absolute_time(element); }

    void write(vxcore::RelativeTime element) { m_sink.write_relative_time(element); }

    void write(AttributeMap const & element) { write_map(element); }

    template <typename T>
    void write(T const & element) {
        m_writer << element;
    }

    void write(vxuri::UriReference const & element) { vxserialize::write_uri(m_writer, element); }

    void write(vxcore::SimpleDateTime const & element) {
        vxserialize::write_simple_date_time(m_writer, element);
    }

    void write(BinaryValue const & element) { write_binary_value(m_writer, element); }

    void write(SerializedValue const & element) { write_serialized_value(m_writer, element); }

    void write(SecuredValue const & element) { element.write(m_writer); }

    void write(ErrorInfoPtr const & element) { vxserialize::write_error_info(m_writer, element); }

    Sink m_sink;
    vxserialize::Writer & m_writer;
    IAttributeNameEncoder * const m_encoder;
    AttributeNameEncoder * const m_tokens; // `m_encoder`, if it is the one of this library
    bool const m_sortedNames;
};

} // namespace vxattribute::impl
