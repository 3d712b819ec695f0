#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/error_codes.h"
#include "vxattribute/stream/bare_kind_internal.h"
#include "vxattribute/stream/contexts_internal.h"
#include "vxattribute/stream/list_room_internal.h"
#include "vxattribute/stream/marshaled_type_internal.h"
#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"
#include "vxserialize/error_info_stream.h"
#include "vxserialize/reader.h"

namespace vxattribute {

void impl::throw_unknown_tag(unsigned int tag, vxcore::SourceLocation location) {
    vxcore::ErrorComposer("Unknown marshaled attribute type id.  Value={@typeId}")
        .param("typeId", vxcore::to_string(tag))
        .throw_error(error::vxattribute_value_type_unknown, std::move(location));
}

namespace {

using impl::RefCountedValueImpl;
using impl::ValueBase;
using impl::ValueFactory;
using impl::ValueHolder;

/// Reads one value.
///
/// A holder owns the value that is being read, because the reader may raise at every step. Each
/// element type has functions of its own: the stack frame of one large function would be taken
/// again for each nested map.
class ValueReader {
  public:
    explicit ValueReader(impl::ReadContext const & context) noexcept
        : m_context(context), m_reader(context.reader()) {}

    ValueHolder read_value() {
        vxserialize::EElementKind const kind = m_reader.next_type();
        if (kind == vxserialize::eElement_Null) {
            m_reader.read_null();
            return ValueHolder();
        }
        return impl::with_bare_element_type(
            kind, [this]<typename T>() { return read_lone_element<T>(); },
            [this] { return read_tagged(m_reader.read_uint()); });
    }

  private:
    ValueHolder read_tagged(unsigned int tag) {
        ValueHolder result;
        if (tag == ValueTypeId::eId_Null) {
            return result;
        }
        bool const isKnown = tag < static_cast<unsigned int>(ValueTypeId::count) &&
                             impl::for_element_type(static_cast<int>(tag), [&]<typename T>() {
                                 result = read_elements<T>();
                             });
        if (!isKnown) {
            impl::throw_unknown_tag(tag,
                                    VXCORE_LOCATION("vxattribute::read_attribute_value_aux()"));
        }
        return result;
    }

    template <typename T>
    static constexpr bool is_array_type = impl::element_type_row<T>.list == impl::eList_Array;

    template <typename T>
    [[gnu::noinline]] ValueHolder read_elements() {
        // One map is a list as well, so the kind of the next element cannot distinguish one map
        // from a list of maps. Maps therefore always come in a list.
        bool const isList =
            std::is_same_v<T, AttributeMap> || m_reader.next_type() == vxserialize::eElement_List;
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
        array->reserve(impl::list_room(m_reader.begin_list(), impl::maxRoomForValues));
        while (m_reader.has_next()) {
            read(array->push_back_default());
        }
        return result;
    }

    template <typename T>
    ValueHolder read_list() {
        unsigned int const count = m_reader.begin_list();
        if (count > 1) {
            return read_counted_list<T>(count);
        }
        return count == 1 ? read_list_of_one<T>() : read_uncounted_list<T>();
    }

    template <typename T>
    ValueHolder read_counted_list(unsigned int count) {
        auto * const list = new RefCountedValueImpl<T>;
        ValueHolder result(list);
        list->reserve(impl::list_room(count, impl::maxRoomForValues));
        append_rest(*list);
        return result;
    }

    /// Only other implementations of Reader report a count of 1; our forms report 0 instead, see
    /// docs/decisions/0004. The end of the list is asked for only if the element is a map.
    template <typename T>
    ValueHolder read_list_of_one() {
        m_reader.has_next();
        ValueHolder result = read_scalar<T>();
        if constexpr (std::is_same_v<T, AttributeMap>) {
            m_reader.has_next();
        }
        return result;
    }

    /// A count of 0 means an empty list, or a form that does not store counts. Such a list may turn
    /// out to have one element, so the first is read aside: one element may have a smaller form.
    template <typename T>
    ValueHolder read_uncounted_list() {
        if (!m_reader.has_next()) {
            return ValueHolder(ValueFactory<T>::create_value());
        }
        T first{};
        read(first);
        if (!m_reader.has_next()) {
            return ValueHolder(ValueFactory<T>::create_value(first));
        }
        auto * const list = new RefCountedValueImpl<T>(first);
        ValueHolder result(list);
        append_rest(*list);
        return result;
    }

    template <typename T>
    void append_rest(RefCountedValueImpl<T> & list) {
        while (m_reader.has_next()) {
            // Strings and maps are read in their place, which saves a copy of each.
            if constexpr (std::is_same_v<T, std::string> || std::is_same_v<T, AttributeMap>) {
                read(list.push_back_default());
            } else {
                T element{};
                read(element);
                list.push_back(element);
            }
        }
    }

    template <typename T>
    ValueHolder read_scalar() {
        if constexpr (std::is_same_v<T, std::string>) {
            // Read in place: a long string is copied once. An empty one is a shared static.
            ValueHolder result = read_into_new<T>();
            auto const & typed = static_cast<impl::TypedValue<T> const &>(*result.get());
            return typed.begin()->empty() ? ValueHolder(ValueFactory<T>::create_value(""))
                                          : std::move(result);
        } else {
            T element{};
            read(element);
            return ValueHolder(ValueFactory<T>::create_value(element));
        }
    }

    template <typename T>
    ValueHolder read_into_new() {
        auto * const value = new RefCountedValueImpl<T>;
        ValueHolder result(value);
        read(value->push_back_default());
        return result;
    }

    template <typename T>
    void read(T & element) {
        m_reader >> element;
    }

    void read(vxuri::UriReference & element) { element = vxserialize::read_uri(m_reader); }

    void read(vxcore::SimpleDateTime & element) {
        element = vxserialize::read_simple_date_time(m_reader);
    }

    void read(BinaryValue & element) { read_binary_value(m_reader, element); }

    void read(SerializedValue & element) { read_serialized_value(m_reader, element); }

    void read(SecuredValue & element) { element.read(m_reader); }

    void read(impl::ErrorInfoPtr & element) { element = vxserialize::read_error_info(m_reader); }

    void read(AttributeMap & element) { element = m_context.read_map(); }

    impl::ReadContext const & m_context;
    vxserialize::Reader & m_reader;
};

} // namespace

void impl::ReadContext::read_value(AttributeValue & value) const {
    // Swapped in when complete, so that a failure leaves `value` as it was.
    ValueHolder result = ValueReader(*this).read_value();
    value.swap_impl(result);
}

void read_attribute_value(vxserialize::Reader & reader, AttributeValue & value) {
    impl::ReadContext(reader).read_value(value);
}

void read_attribute_value(vxserialize::Reader & reader, IAttributeNameDecoder & decoder,
                          AttributeValue & value) {
    impl::ReadContext(reader, &decoder).read_value(value);
}

} // namespace vxattribute
