#include "sorted_stream.h"

#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/elements.h"
#include "vxattribute/sorted_by_name.h"
#include "vxserialize/writer.h"

namespace vxattr {

using namespace vxattribute;

namespace {

void write_map(vxserialize::Writer & writer, IAttributeNameEncoder & encoder,
               AttributeMap const & map) {
    writer.begin_list(map.size());
    bool isFirst = true;
    for (auto const & element : sorted_by_name(map)) {
        if (!isFirst) {
            writer.next_list_item();
        }
        isFirst = false;
        element->first.write(writer, encoder);
        write_sorted(writer, encoder, element->second);
    }
    writer.end_list();
}

} // namespace

/// Maps nest no deeper than the writer lets lists, so the recursion has an end.
void write_sorted(vxserialize::Writer & writer, IAttributeNameEncoder & encoder,
                  AttributeValue const & value) {
    if (value.type() != ValueTypeId::typeAttributeMap) {
        write_attribute_value(writer, encoder, value);
        return;
    }
    writer.write_uint(ValueTypeId::eId_AttributeMap);
    writer.begin_list(value.size());
    bool isFirst = true;
    for (AttributeMap const & map : elements<AttributeMap>(value)) {
        if (!isFirst) {
            writer.next_list_item();
        }
        isFirst = false;
        write_map(writer, encoder, map);
    }
    writer.end_list();
}

} // namespace vxattr
