#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/stream/bare_kind_internal.h"
#include "vxattribute/stream/contexts_internal.h"
#include "vxserialize/error_info_stream.h"
#include "vxserialize/writer.h"

namespace vxattribute {

namespace {

/// Writes the elements of one value.
class ElementWriter {
  public:
    explicit ElementWriter(impl::WriteContext const & context) noexcept
        : m_context(context), m_writer(context.writer()) {}

    template <typename T>
    void write_elements(T const * first, T const * last) {
        // One map is written as a list of one: a map is a list itself, so readers could not tell a
        // lone map from a list of maps.
        bool const isScalar = last - first == 1 && !std::is_same_v<T, AttributeMap>;
        if (!isScalar || impl::bare_kind<T> == vxserialize::eElement_None) {
            m_writer.write_uint(static_cast<unsigned int>(impl::ValueTypeTraits<T>::type().id()));
        }
        if (isScalar) {
            write(*first);
            return;
        }
        m_writer.begin_list(static_cast<unsigned int>(last - first));
        for (T const * p = first; p != last; ++p) {
            if (p != first) {
                m_writer.next_list_item();
            }
            write(*p);
        }
        m_writer.end_list();
    }

  private:
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

    void write(impl::ErrorInfoPtr const & element) {
        vxserialize::write_error_info(m_writer, element);
    }

    void write(AttributeMap const & element) { m_context.write_map(element); }

    impl::WriteContext const & m_context;
    vxserialize::Writer & m_writer;
};

} // namespace

void impl::WriteContext::write_value(AttributeValue const & value) const {
    if (value.is_null()) {
        m_writer.write_null();
        return;
    }
    impl::for_element_type(value.type().id(), [&]<typename T>() {
        ElementWriter(*this).write_elements(value.begin<T>(), value.end<T>());
    });
}

void write_attribute_value(vxserialize::Writer & writer, AttributeValue const & value) {
    impl::WriteContext(writer).write_value(value);
}

void write_attribute_value(vxserialize::Writer & writer, IAttributeNameEncoder & encoder,
                           AttributeValue const & value) {
    impl::WriteContext(writer, &encoder).write_value(value);
}

void write_attribute_value(vxserialize::Writer & writer, AttributeValue const & value,
                           StreamOptions const & options) {
    impl::WriteContext(writer, nullptr, options.sorted_names).write_value(value);
}

void write_attribute_value(vxserialize::Writer & writer, IAttributeNameEncoder & encoder,
                           AttributeValue const & value, StreamOptions const & options) {
    impl::WriteContext(writer, &encoder, options.sorted_names).write_value(value);
}

} // namespace vxattribute
