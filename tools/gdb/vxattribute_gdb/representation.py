"""How values are kept: see attribute_value_impl.h."""

import gdb

from .memory import Broken, count, object_at, type_named

# The rows of element_type_table.inc: number, name and C++ type.
ELEMENT_TYPES = {
    1: ("Boolean", "bool"),
    2: ("Integer", "long long"),
    3: ("String", "std::string"),
    4: ("Double", "double"),
    5: ("UUID", "vxcore::Uuid"),
    6: ("URI", "vxuri::UriReference"),
    7: ("AbsoluteTime", "vxcore::AbsoluteTime"),
    8: ("RelativeTime", "vxcore::RelativeTime"),
    9: ("SimpleDateTime", "vxcore::SimpleDateTime"),
    10: ("Binary", "vxattribute::BinaryValue"),
    11: ("Serialized", "vxattribute::SerializedValue"),
    12: ("AttributeMap", "vxattribute::AttributeMap"),
    13: ("Secured", "vxattribute::SecuredValue"),
    14: ("ErrorInfo", "vxcore::RefCountPtr<vxcore::ErrorInfo const>"),
}


def elements(value):
    """The name of the type of a value, its first element as a pointer, and how many there are; None
    for null."""
    address = value["m_holder"]["m_value"]
    base = object_at(address, "vxattribute::impl::ValueBase")
    number = int(base["m_type"]["m_id"])
    if number == 0:
        return None
    if number not in ELEMENT_TYPES:
        raise Broken("a value of type number %d" % number)
    name, element = ELEMENT_TYPES[number]
    # Begin and end of the elements come first in TypedValue, after its base. Compilers leave out the
    # debug information of most TypedValue<T>.
    pointer = type_named(element).pointer()
    ends = gdb.Value(int(address) + base.type.sizeof).cast(pointer.pointer())
    return name, ends[0], count(ends[0], ends[1], pointer.target().sizeof)
