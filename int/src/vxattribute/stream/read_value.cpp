#include "vxattribute/error_codes.h"
#include "vxattribute/stream/contexts_internal.h"
#include "vxattribute/stream/value_reader_internal.h"
#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"

#include <typeinfo>

namespace vxattribute {

void impl::throw_unknown_tag(unsigned int tag, vxcore::SourceLocation location) {
    vxcore::ErrorComposer("Unknown marshaled attribute type id.  Value={@typeId}")
        .param("typeId", vxcore::to_string(tag))
        .throw_error(error::vxattribute_value_type_unknown, std::move(location));
}

namespace {

/// Returns `read` of the ValueReader that suits the reader: one in line for the binary form.
template <typename Read>
auto with_value_reader(vxserialize::Reader & reader, IAttributeNameDecoder * decoder, Read read) {
    if (typeid(reader) == typeid(vxserialize::MemoryReader)) {
        vxserialize::impl::MemoryReaderView const view(
            static_cast<vxserialize::MemoryReader &>(reader));
        return read(impl::ValueReader<vxserialize::impl::MemoryReaderView>(view, reader, decoder));
    }
    return read(impl::ValueReader<vxserialize::Reader &>(reader, reader, decoder));
}

} // namespace

void impl::ReadContext::read_value(AttributeValue & value) const {
    // Swapped in when complete, so that a failure leaves `value` as it was.
    ValueHolder result =
        with_value_reader(m_reader, m_decoder, [](auto && values) { return values.read_value(); });
    value.swap_impl(result);
}

AttributeMap impl::ReadContext::read_map() const {
    return with_value_reader(m_reader, m_decoder, [](auto && values) { return values.read_map(); });
}

void read_attribute_value(vxserialize::Reader & reader, AttributeValue & value) {
    impl::ReadContext(reader).read_value(value);
}

void read_attribute_value(vxserialize::Reader & reader, IAttributeNameDecoder & decoder,
                          AttributeValue & value) {
    impl::ReadContext(reader, &decoder).read_value(value);
}

} // namespace vxattribute
