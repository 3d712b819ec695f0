#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/stream/contexts_internal.h"
#include "vxattribute/stream/value_writer_internal.h"

#include <typeinfo>

namespace vxattribute {

namespace {

/// Calls `write` with the ValueWriter that suits the writer: one in line for the binary form.
template <typename Write>
void with_value_writer(vxserialize::Writer & writer, IAttributeNameEncoder * encoder,
                       bool sortedNames, Write write) {
    if (typeid(writer) == typeid(vxserialize::MemoryWriter)) {
        vxserialize::impl::MemoryWriterView const view(
            static_cast<vxserialize::MemoryWriter &>(writer));
        write(impl::ValueWriter<vxserialize::impl::MemoryWriterView>(view, writer, encoder,
                                                                     sortedNames));
    } else {
        write(impl::ValueWriter<vxserialize::Writer &>(writer, writer, encoder, sortedNames));
    }
}

} // namespace

void impl::WriteContext::write_value(AttributeValue const & value) const {
    with_value_writer(m_writer, m_encoder, m_sortedNames,
                      [&value](auto && values) { values.write_value(value); });
}

void impl::WriteContext::write_map(AttributeMapBase const & map) const {
    with_value_writer(m_writer, m_encoder, m_sortedNames,
                      [&map](auto && values) { values.write_map(map); });
}

void impl::WriteContext::write_tree(AttributeMapBase::Map const & tree) const {
    with_value_writer(m_writer, m_encoder, m_sortedNames,
                      [&tree](auto && values) { values.write_list(tree); });
}

void impl::WriteContext::write_element(AttributeMapBase::value_type const & element) const {
    with_value_writer(m_writer, m_encoder, m_sortedNames,
                      [&element](auto && values) { values.write_element(element); });
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
